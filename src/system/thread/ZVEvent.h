#pragma once

#include <cstdint>

#include <pthread.h>

// Something that threads wait for: it is signalled, or it is not. May be used by any number of threads.
class ZVEvent
{
public:
    // An event that is not signalled. With autoReset a wait that ends by the signal takes it, so that it serves one wait only;
    // without it the event stays signalled until Clear.
    explicit ZVEvent(bool autoReset);
    // No thread may be in Wait.
    ~ZVEvent();

    ZVEvent(const ZVEvent&) = delete;
    ZVEvent& operator=(const ZVEvent&) = delete;

    void Signal();
    void Clear();
    bool IsSignalled() const;

    // Waits until the event is signalled and gives true, or false once that many milliseconds have passed. A negative time has no
    // end.
    bool Wait(int32_t milliseconds);

private:
    bool WaitForSignal(int32_t milliseconds);

    mutable pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t m_condition = PTHREAD_COND_INITIALIZER;
    bool m_isSignalled = false;
    const bool m_autoReset;
};
