#pragma once

#include "mp4/tags/CTagAtomBase.h"

#include <cstdint>

class ZVFilename;

// An item of an ilst whose type is the number of a key, from 1 on. The type of its data says how its value is read.
class MetadataItemAtom : public CTagAtomBase
{
public:
    static const CAtomClass Class;

    using CTagAtomBase::CTagAtomBase;

    // A text or a number as text. A picture is written to the file that value names; see the other form. False if there is no
    // value, or one of an unknown type.
    bool GetValue(ZVString& value) const override;
    // Writes the picture to a file, or without a name to a new temporary one, which filename then names. False if the value is no
    // picture or if it could not be written.
    bool GetValue(ZVFilename& filename) const;
    bool IsPicture() const;
    // The type of its data; that of UTF-8 if there are none.
    uint32_t GetDataType() const;
    // Keeps the type of data if it is that of a number; otherwise the value becomes UTF-8.
    void SetValue(const ZVString& value) override;
    // The same with the type of data that the value gets; one that is not that of a number makes it UTF-8.
    void SetValue(const ZVString& value, uint32_t dataType);

private:
    const CTagDataAtom* FindFirstData() const;
};

inline constexpr CAtomClass MetadataItemAtom::Class = MakeAtomClass<MetadataItemAtom>("MetadataItemAtom");
