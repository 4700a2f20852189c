#include "mp4/samples/CSTSSAtom.h"

void CSTSSAtom::AddAll(uint32_t sampleCount)
{
    m_samples.AddRows(sampleCount);
    for (uint32_t sample = 0; sample < sampleCount; ++sample)
        m_samples.Set(sample, sample + 1);
}

void CSTSSAtom::MoveBehind(uint32_t sampleCount)
{
    for (uint32_t row = 0; row < m_samples.GetCount(); ++row)
        m_samples.Set(row, m_samples.Get<uint32_t>(row) + sampleCount);
}

bool CSTSSAtom::IsInOrder(uint32_t sampleCount) const
{
    uint32_t last = 0;
    for (uint32_t row = 0; row < m_samples.GetCount(); ++row)
    {
        const auto sample = m_samples.Get<uint32_t>(row);
        if (sample <= last || sample > sampleCount)
            return false;
        last = sample;
    }
    return true;
}
