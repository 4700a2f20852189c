#pragma once

#include "mp4/tags/CTagAtomBase.h"

// Bytes of UTF-8 that players expect at most of most tags.
inline constexpr size_t MaximumTagText = 255;

// A tag that is a text, in UTF-8 in the file.
class CStringTagAtomBase : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    // Cuts a text that is too long for the tag.
    void SetValue(const ZVString& value) override;
    // Whether players expect no more than MaximumTagText bytes of it.
    bool HasLengthLimit() const;
};
