#pragma once

#include "core/string/ZVString.h"
#include "mp4/model/CContainerAtom.h"

#include <string_view>

class CTagDataAtom;

// One tag of an ilst, whose value is in a data child. This class itself serves for tags that are kept and written back but never
// shown.
class CTagAtomBase : public CContainerAtom
{
public:
    using CContainerAtom::CContainerAtom;

    // The value as text. False, with the text as it was, if there is none or if it makes no sense.
    virtual bool GetValue(ZVString& value) const;

protected:
    // The first data child that has a value, or null.
    const CTagDataAtom* FindData() const;
    // The bytes of that value. None also of one that is so long that it stays in the file, which is no text and no number.
    std::string_view GetBytes() const;
};
