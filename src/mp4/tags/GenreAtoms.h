#pragma once

#include "mp4/tags/CStringTagAtomBase.h"

// gnre: a genre by its number, from 1 on.
class CStandardGenreAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    // Takes a name with the spelling of the list.
    void SetValue(const ZVString& value) override;
};

// ©gen: a genre as text. One such as "(17)" is a number in parentheses, from 0 on, as older taggers had it.
class CCustomGenreAtom : public CStringTagAtomBase
{
public:
    using CStringTagAtomBase::CStringTagAtomBase;

    bool GetValue(ZVString& value) const override;
};
