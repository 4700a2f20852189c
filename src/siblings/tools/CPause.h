#pragma once

#include <cstdint>

// Two seconds in which something is not done again that costs too much to be done at every call: trying what has just failed,
// looking at what rarely changes. To ask costs next to nothing.
class CPause
{
public:
    // Begins, or begins anew.
    void Begin();
    // True when it has ended, and when it never began.
    bool IsOver() const;

private:
    int64_t m_end = 0;  // on the monotonic clock, in milliseconds
};
