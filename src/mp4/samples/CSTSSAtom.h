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

    // Its numbers must be counted from the first sample of this table's track.
    void Append(CAtom& other) override { m_samples.AddRows(static_cast<const CSTSSAtom&>(other).m_samples); }
    // Lists all samples of a track in an empty table.
    void AddAll(uint32_t sampleCount);
    // Counts from a track that has that many samples in front.
    void MoveBehind(uint32_t sampleCount);
    // Whether it names each sample once, in ascending order, and none that a track of so many samples does not have.
    bool IsInOrder(uint32_t sampleCount) const;

    const CAtomTable& GetSamples() const { return m_samples; }

private:
    CAtomTable m_samples;
};

inline constexpr CAtomClass CSTSSAtom::Class = MakeAtomClass<CSTSSAtom>("CSTSSAtom");
