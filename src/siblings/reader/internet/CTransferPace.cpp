#include "siblings/reader/internet/CTransferPace.h"

#include <algorithm>

namespace
{
constexpr int64_t NanosecondsPerMillisecond = 1'000'000;
constexpr int64_t MillisecondsPerSecond = 1000;
// How long a wait may last before the clock is looked at, where nothing else limits it.
constexpr int32_t MaximumWait = 1000;
}

void CTransferPace::Reset()
{
    m_signsOfLife = 0;
    m_periodTime = 0;
    m_periodStart = 0;
}

void CTransferPace::BeginWait()
{
    m_silence = ZVElapsedTime();
    m_sinceCheck = ZVElapsedTime();
}

const char* CTransferPace::Check(const State& state)
{
    if (state.SignsOfLife != m_signsOfLife)
        m_silence = ZVElapsedTime();
    m_signsOfLife = state.SignsOfLife;
    const int64_t waited = m_sinceCheck.GetNanoseconds();
    m_sinceCheck = ZVElapsedTime();
    if (IsTooSlow(state, waited))
        return "timed out: it is too slow";
    return m_timeout > 0 && m_silence.GetMilliseconds() >= m_timeout ? "timed out: nothing came" : nullptr;
}

bool CTransferPace::IsTooSlow(const State& state, int64_t waited)
{
    m_periodTime += waited;
    const int64_t milliseconds = m_periodTime / NanosecondsPerMillisecond;
    if (state.IsMoving && milliseconds < m_limits.SpeedPeriod)
        return false;
    const int64_t moved = state.MovedBytes - m_periodStart;
    m_periodTime = 0;
    m_periodStart = state.MovedBytes;
    return state.IsMoving && moved < m_limits.LeastSpeed * milliseconds / MillisecondsPerSecond;
}

int32_t CTransferPace::GetLongestWait() const
{
    return m_timeout > 0 ? std::clamp(m_timeout - m_silence.GetMilliseconds(), 0, MaximumWait) : MaximumWait;
}
