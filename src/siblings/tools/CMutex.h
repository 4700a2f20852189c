#pragma once

#include <pthread.h>

// A lock that the thread which holds it may take again.
class CMutex
{
public:
    CMutex()
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
        pthread_mutex_init(&m_mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }

    ~CMutex() { pthread_mutex_destroy(&m_mutex); }

    CMutex(const CMutex&) = delete;
    CMutex& operator=(const CMutex&) = delete;

    void Lock() { pthread_mutex_lock(&m_mutex); }
    void Unlock() { pthread_mutex_unlock(&m_mutex); }

private:
    pthread_mutex_t m_mutex;
};

// Holds a mutex for a scope.
class CMutexLock
{
public:
    explicit CMutexLock(CMutex& mutex) : m_mutex(mutex) { m_mutex.Lock(); }
    ~CMutexLock() { m_mutex.Unlock(); }

    CMutexLock(const CMutexLock&) = delete;
    CMutexLock& operator=(const CMutexLock&) = delete;

private:
    CMutex& m_mutex;
};
