#include "video/blackbars/ZVSamplePositions.h"

namespace
{
constexpr int64_t MicrosecondsPerSecond = 1'000'000;
}

ZVSamplePositions::ZVSamplePositions(int64_t duration) : m_duration(duration)
{
    if (duration <= 0)
        return;
    const int32_t step = static_cast<int32_t>(duration / MicrosecondsPerSecond) / Parts;
    for (int32_t part = 1; part < Parts; ++part)
        m_seconds[m_count++] = part * step;
}

bool ZVSamplePositions::IsBeforeEnd(int32_t index) const
{
    const uint32_t microseconds = static_cast<uint32_t>(m_seconds[index]) * static_cast<uint32_t>(MicrosecondsPerSecond);
    return m_duration <= 0 || static_cast<int32_t>(microseconds) < m_duration;
}
