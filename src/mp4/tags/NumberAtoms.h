#pragma once

#include "mp4/tags/CTagAtomBase.h"

// trkn and disk: a number and of how many, as "5/12".
class CNumberOfTotalAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
};

// A number of 16 bits; 0 is no value.
class CShortNumberAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
};

// A number of 8 bits.
class CByteNumberAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
};

// "0" or "1"; any other byte is no value.
class CFlagAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
};
