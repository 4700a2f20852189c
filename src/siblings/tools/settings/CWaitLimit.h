#pragma once

#include <cstdint>

// The time that one call may spend waiting for other processes: five seconds in all, whatever it waits for and how often.
class CWaitLimit
{
public:
    // The time begins with the object.
    CWaitLimit();

    // Waits for a moment. False, without waiting, when the time is over.
    bool WaitABit() const;

private:
    int64_t m_end;  // on the monotonic clock, in milliseconds
};
