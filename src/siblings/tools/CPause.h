#pragma once

#include <cstdint>

// Two seconds in which something is not repeated that would cost too much at every call, such as trying again what has just
// failed or checking what rarely changes. Asking costs almost nothing.
class CPause
{
public:
    // Starts, or starts again.
    void Begin();
    // True if it has ended or was never started.
    bool IsOver() const;

private:
    int64_t m_end = 0;  // on the monotonic clock, in milliseconds
};
