#include "system/thread/ZVTimer.h"

#include <ctime>

#include <sys/time.h>

namespace
{
constexpr double MicrosecondsPerSecond = 1'000'000.0;
}

int64_t ZVTimer::GetMicroseconds()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * int64_t {1'000'000} + now.tv_nsec / 1000;
}

double ZVTimer::GetMilliseconds()
{
    timeval now {};
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_usec) / 1000.0;
}

double ZVTimer::GetElapsed(bool restart)
{
    const int64_t now = GetMicroseconds();
    const int64_t start = restart ? m_start.exchange(now) : m_start.load();
    return static_cast<double>(now - start) / MicrosecondsPerSecond;
}
