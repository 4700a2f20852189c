#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>

// stts: how long the samples are shown (ISO/IEC 14496-12, 8.6.1.2), in runs of samples that are equally long.
class CSTTSAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        uint32_t count = m_runs.GetCount();
        visitor.Field("entry count", count);
        visitor.Table("sample counts and deltas", count, m_runs);
    }

    void Append(CAtom& other) override { m_runs.AddRows(static_cast<const CSTTSAtom&>(other).m_runs); }

    // The runs, which count from 0, and what is said of one that is there.
    uint32_t GetRunCount() const { return m_runs.GetCount(); }
    uint32_t GetSampleCount(uint32_t run) const { return m_runs.Get<uint32_t>(run); }
    // In units of the media's timescale.
    uint32_t GetSampleDelta(uint32_t run) const { return m_runs.Get<uint32_t>(run, 4); }
    // The samples of all runs. Goes through the whole table, like the next.
    uint64_t CountSamples() const;
    // How long all samples are together, in such units, modulo 2^64.
    uint64_t GetTotalDuration() const;

private:
    static constexpr int32_t RowWidth = 8;

    CAtomTable m_runs {RowWidth};
};

inline constexpr CAtomClass CSTTSAtom::Class = MakeAtomClass<CSTTSAtom>("CSTTSAtom");
