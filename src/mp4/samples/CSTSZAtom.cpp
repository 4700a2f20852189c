#include "mp4/samples/CSTSZAtom.h"

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
