#pragma once

#include "system/log/ZVElapsedTime.h"

#include <cstdint>

// How slow and how large an answer may become before it is given up. A server that sends a byte now and then would otherwise hold
// its reader for ever, and one that never ends would fill its disk.
struct CTransferLimits
{
    // Bytes of a body whose length no header tells.
    int64_t UndeclaredBody = int64_t {4} << 30;
    // How many bytes a second must come on average, and over how many milliseconds that is measured.
    int64_t LeastSpeed = 1024;
    int32_t SpeedPeriod = 60'000;
};

// Watches that an exchange does not stand still and is not too slow. Only the time that is spent waiting counts: between two calls
// the caller may take as long as it likes.
class CTransferPace
{
public:
    // What is known of the exchange at one moment.
    struct State
    {
        // Changes with every sign of life of the other side.
        int64_t SignsOfLife = 0;
        // Bytes of the request's body and of the answer that went over so far.
        int64_t MovedBytes = 0;
        // Bytes are on their way. False while the other side makes up its mind.
        bool IsMoving = false;
    };

    // The longest silence in milliseconds; 0 or below is no limit.
    void SetTimeout(int32_t milliseconds) { m_timeout = milliseconds; }
    void SetLimits(const CTransferLimits& limits) { m_limits = limits; }
    const CTransferLimits& GetLimits() const { return m_limits; }
    int32_t GetTimeout() const { return m_timeout; }

    // Another exchange begins.
    void Reset();
    // The waiting begins, or goes on after a time that was the caller's own.
    void BeginWait();
    // Looks at the clock. Null when the exchange may go on, otherwise the reason why not.
    const char* Check(const State& state);
    // How many milliseconds to wait at most before the next look.
    int32_t GetLongestWait() const;

private:
    bool IsTooSlow(const State& state, int64_t waited);

    CTransferLimits m_limits;
    int32_t m_timeout = 0;
    int64_t m_signsOfLife = 0;
    ZVElapsedTime m_silence;
    ZVElapsedTime m_sinceCheck;
    // The present period: how many nanoseconds of it are over, and the bytes that had moved before it.
    int64_t m_periodTime = 0;
    int64_t m_periodStart = 0;
};
