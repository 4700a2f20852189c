#pragma once

#include "mp4/tags/CTagAtomBase.h"

// A tag that is a text, in UTF-8 in the file.
class CStringTagAtomBase : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    // Whether players expect no more than 255 bytes of it.
    bool HasLengthLimit() const;
};
