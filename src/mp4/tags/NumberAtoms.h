#pragma once

#include "mp4/tags/CTagAtomBase.h"

// trkn and disk: a number and of how many, as "5/12", or "5" if that is not known.
class CNumberOfTotalAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    void SetValue(const ZVString& value) override;
};

// A number of 16 bits; 0 is no value.
class CShortNumberAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    void SetValue(const ZVString& value) override;
};

// A number of 8 bits.
class CByteNumberAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    void SetValue(const ZVString& value) override;
};

// "0" or "1"; any other byte is no value. It can also be set by "true", "false", "yes" and "no".
class CFlagAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    bool GetValue(ZVString& value) const override;
    void SetValue(const ZVString& value) override;
};

// tves and tvsn: a number of 32 bits, which is kept and written but never shown.
class CHiddenNumberAtom : public CTagAtomBase
{
public:
    using CTagAtomBase::CTagAtomBase;

    void SetValue(const ZVString& value) override;
};
