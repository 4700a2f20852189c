#include "mp4/samples/CSTSZAtom.h"

#include "mp4/model/Exception.h"

void CSTSZAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CSTSZAtom&>(other);
    if (m_defaultSize != second.m_defaultSize)
        ThrowException(L"STSZ Sample Size is different");
    if (__builtin_add_overflow(m_count, second.m_count, &m_count))
        ThrowException(L"STSZ: The tracks have too many samples");
    m_sizes.AddRows(second.m_sizes);
}

int64_t CSTSZAtom::GetSampleSize(uint32_t sample) const
{
    if (sample >= m_count)
        return -1;
    return m_defaultSize != 0 ? m_defaultSize : m_sizes.Get<uint32_t>(sample);
}

uint64_t CSTSZAtom::SumSampleSizes(uint32_t first, uint32_t end) const
{
    if (m_defaultSize != 0)
        return uint64_t {end - first} * m_defaultSize;
    uint64_t sum = 0;
    for (uint32_t sample = first; sample < end; ++sample)
        sum += m_sizes.Get<uint32_t>(sample);
    return sum;
}
