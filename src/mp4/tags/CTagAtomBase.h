#pragma once

#include "core/string/ZVString.h"
#include "mp4/model/CContainerAtom.h"

#include <cstdint>
#include <span>
#include <string_view>

class CTagDataAtom;

// One tag of an ilst, whose value is in a data child.
class CTagAtomBase : public CContainerAtom
{
public:
    using CContainerAtom::CContainerAtom;

    // The value as text. False, with the text as it was, if there is none or if it makes no sense.
    virtual bool GetValue(ZVString& value) const;
    // Replaces all that the atom holds by a value, as GetValue tells it. Throws for a text that is no value of this tag; the atom
    // then stays as it was.
    virtual void SetValue(const ZVString& value) = 0;
    // The same with the picture in a file.
    void SetPicture(const ZVString& path);

protected:
    // Replaces all that the atom holds by one value.
    void SetData(uint32_t dataType, std::span<const uint8_t> value);
    // In UTF-8, of which no more than a count of bytes is kept.
    void SetText(const ZVString& text, size_t maximumBytes);
    // The big-endian low bytes of a number.
    void SetNumber(uint32_t dataType, uint64_t number, int32_t width);
    // The first data child that has a value, or null.
    const CTagDataAtom* FindData() const;
    // The bytes of that value. None also of one that is so long that it stays in the file, which is no text and no number.
    std::string_view GetBytes() const;
};
