#include "siblings/tools/CPause.h"

#include <ctime>

namespace
{
// Long enough that a thousand calls cost no more than one, short enough for a user who waits for a change to take effect.
constexpr int64_t PauseMilliseconds = 2000;

int64_t Now()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return int64_t {now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}
}

void CPause::Begin()
{
    m_end = Now() + PauseMilliseconds;
}

bool CPause::IsOver() const
{
    return Now() >= m_end;
}
