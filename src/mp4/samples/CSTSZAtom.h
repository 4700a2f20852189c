#pragma once

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CFullAtom.h"

#include <cstdint>

// stsz: how many samples there are and how many bytes each has (ISO/IEC 14496-12, 8.7.3.2). When all have the same size, there is
// no table, and nothing in the atom backs the count.
class CSTSZAtom : public CFullAtom
{
public:
    static const CAtomClass Class;

    using CFullAtom::CFullAtom;

    void Fields(CFieldVisitor& visitor)
    {
        CFullAtom::Fields(visitor);
        visitor.Field("default size", m_defaultSize);
        visitor.Field("sample count", m_count);
        if (m_defaultSize == 0)
            visitor.Table("sizes", m_count, m_sizes);
    }

    // Throws unless both have the same size for all samples, or both have a table.
    void Append(CAtom& other) override;

    uint32_t GetSampleCount() const { return m_count; }
    // Samples count from 0; -1 for one that is not there.
    int64_t GetSampleSize(uint32_t sample) const;
    // The bytes of the samples from one up to but without another, both of which may be the end. Unless all have the same size, it
    // takes a time in proportion to their number.
    uint64_t SumSampleSizes(uint32_t first, uint32_t end) const;

private:
    uint32_t m_defaultSize = 0;
    uint32_t m_count = 0;
    CAtomTable m_sizes;
};

inline constexpr CAtomClass CSTSZAtom::Class = MakeAtomClass<CSTSZAtom>("CSTSZAtom");
