#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>

// stss: the samples that can be shown without those before them (ISO/IEC 14496-12, 8.6.2), by their numbers, which count from 1.
class CSTSSAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        uint32_t count = m_samples.GetCount();
        visitor.Field("entry count", count);
        visitor.Table("sample numbers", count, m_samples);
    }

    // Throws unless it is among the tables of a track.
    void Verify(const CMDATList&, bool) override { GetParent(FourCC("stbl")); }

    const CAtomTable& GetSamples() const { return m_samples; }

private:
    CAtomTable m_samples;
};

inline constexpr CAtomClass CSTSSAtom::Class = MakeAtomClass<CSTSSAtom>("CSTSSAtom");
