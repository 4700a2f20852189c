#include "siblings/tools/settings/CWaitLimit.h"

#include <ctime>

namespace
{
constexpr int64_t LimitMilliseconds = 5000;
constexpr int64_t MomentMilliseconds = 10;

int64_t Now()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t {now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}
}

CWaitLimit::CWaitLimit() : m_end(Now() + LimitMilliseconds) {}

bool CWaitLimit::WaitABit() const
{
    if (Now() >= m_end)
        return false;
    const timespec moment {0, MomentMilliseconds * 1'000'000};
    nanosleep(&moment, nullptr);
    return true;
}
