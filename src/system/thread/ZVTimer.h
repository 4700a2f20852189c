#pragma once

#include <atomic>
#include <cstdint>

// A stopwatch. One thread may reset it while another reads it.
class ZVTimer
{
public:
    ZVTimer() : m_start(GetMicroseconds()) {}

    // The present value of the stopwatch's clock, which only runs forward; its zero means nothing.
    static int64_t GetMicroseconds();
    // Milliseconds since 1970-01-01 UTC, with a fraction. This is the clock on the wall, which can be set back.
    static double GetMilliseconds();

    // Seconds since the construction, or since the last restart. With restart the next count begins at the very moment this one
    // ends.
    double GetElapsed(bool restart);
    void Reset() { m_start = GetMicroseconds(); }

private:
    std::atomic<int64_t> m_start;
};
