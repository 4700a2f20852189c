#pragma once

#include <cstdint>

// Measures time on the monotonic clock, from its construction on.
class ZVElapsedTime
{
public:
    ZVElapsedTime();
    virtual ~ZVElapsedTime() = default;

    int64_t GetNanoseconds() const;
    // Whole milliseconds, rounded down. After more than 24 days only the low 32 bits are left.
    int32_t GetMilliseconds() const;

private:
    int64_t m_start;
};
