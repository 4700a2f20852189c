#include "system/thread/ZVEvent.h"

#include <ctime>

#include <sys/time.h>

namespace
{
class MutexLock
{
public:
    explicit MutexLock(pthread_mutex_t& mutex) : m_mutex(mutex) { pthread_mutex_lock(&m_mutex); }
    ~MutexLock() { pthread_mutex_unlock(&m_mutex); }

    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    pthread_mutex_t& m_mutex;
};

// The moment that many milliseconds from now, on the clock that conditions use.
timespec DeadlineAfter(int32_t milliseconds)
{
    timeval now {};
    gettimeofday(&now, nullptr);
    const int64_t microseconds = now.tv_usec + milliseconds % 1000 * int64_t {1000};
    timespec deadline {};
    deadline.tv_sec = now.tv_sec + milliseconds / 1000 + microseconds / 1'000'000;
    deadline.tv_nsec = microseconds % 1'000'000 * 1000;
    return deadline;
}
}

ZVEvent::ZVEvent(bool autoReset) : m_autoReset(autoReset) {}

ZVEvent::~ZVEvent()
{
    pthread_cond_destroy(&m_condition);
    pthread_mutex_destroy(&m_mutex);
}

void ZVEvent::Signal()
{
    const MutexLock lock(m_mutex);
    m_isSignalled = true;
    pthread_cond_broadcast(&m_condition);
}

void ZVEvent::Clear()
{
    const MutexLock lock(m_mutex);
    m_isSignalled = false;
}

bool ZVEvent::IsSignalled() const
{
    const MutexLock lock(m_mutex);
    return m_isSignalled;
}

bool ZVEvent::Wait(int32_t milliseconds)
{
    const MutexLock lock(m_mutex);
    if (!WaitForSignal(milliseconds))
        return false;
    if (m_autoReset)
        m_isSignalled = false;
    return true;
}

bool ZVEvent::WaitForSignal(int32_t milliseconds)
{
    if (milliseconds < 0)
    {
        while (!m_isSignalled)
            pthread_cond_wait(&m_condition, &m_mutex);
        return true;
    }
    const timespec deadline = DeadlineAfter(milliseconds);
    while (!m_isSignalled && pthread_cond_timedwait(&m_condition, &m_mutex, &deadline) == 0)
    {
    }
    return m_isSignalled;
}
