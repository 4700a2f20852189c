#include "system/log/ZVElapsedTime.h"

#include <ctime>

namespace
{
constexpr int64_t NanosecondsPerSecond = 1'000'000'000;
constexpr double NanosecondsPerMillisecond = 1'000'000.0;

int64_t MonotonicNow()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * NanosecondsPerSecond + now.tv_nsec;
}
}

ZVElapsedTime::ZVElapsedTime() : m_start(MonotonicNow()) {}

int64_t ZVElapsedTime::GetNanoseconds() const
{
    return MonotonicNow() - m_start;
}

int32_t ZVElapsedTime::GetMilliseconds() const
{
    // Converted through 64 bits, because a process may live for more milliseconds than fit into 32.
    return static_cast<int32_t>(static_cast<int64_t>(static_cast<double>(GetNanoseconds()) / NanosecondsPerMillisecond));
}
