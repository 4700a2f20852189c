#pragma once

#include <atomic>
#include <cstdint>

// A stopwatch. One thread may reset it while another reads it.
class ZVTimer
{
public:
    ZVTimer() : m_start(GetMicroseconds()) {}

    // The current value of the stopwatch's clock. It only runs forward, and its zero has no meaning.
    static int64_t GetMicroseconds();
    // Milliseconds since 1970-01-01 UTC, with a fraction. This clock shows the time of day and can be set back.
    static double GetMilliseconds();

    // Seconds since the construction or the last restart. With restart the next count begins at the very moment that this one
    // ends.
    double GetElapsed(bool restart);
    void Reset() { m_start = GetMicroseconds(); }

private:
    std::atomic<int64_t> m_start;
};
