#pragma once

#include <cstdint>

#include <pthread.h>

// Something that threads wait for: it is signalled or not. Any number of threads may use it.
class ZVEvent
{
public:
    // An event that is not signalled. With autoReset the first wait that the signal ends clears it, so a signal serves one wait;
    // without autoReset the event stays signalled until Clear.
    explicit ZVEvent(bool autoReset);
    // No thread may be in Wait.
    ~ZVEvent();

    ZVEvent(const ZVEvent&) = delete;
    ZVEvent& operator=(const ZVEvent&) = delete;

    void Signal();
    void Clear();
    bool IsSignalled() const;

    // Waits until the event is signalled. False when that many milliseconds pass before; a negative time means no limit.
    bool Wait(int32_t milliseconds);

private:
    bool WaitForSignal(int32_t milliseconds);

    mutable pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t m_condition = PTHREAD_COND_INITIALIZER;
    bool m_isSignalled = false;
    const bool m_autoReset;
};
