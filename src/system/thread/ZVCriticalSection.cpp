#include "system/thread/ZVCriticalSection.h"

ZVCriticalSection::ZVCriticalSection()
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&m_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

ZVCriticalSection::~ZVCriticalSection()
{
    pthread_mutex_destroy(&m_mutex);
}

void ZVCriticalSection::Lock()
{
    pthread_mutex_lock(&m_mutex);
    MarkTaken();
}

void ZVCriticalSection::Unlock()
{
    MarkFreed();
    pthread_mutex_unlock(&m_mutex);
}

void ZVCriticalSection::WaitFor(pthread_cond_t& condition)
{
    MarkFreed();
    pthread_cond_wait(&condition, &m_mutex);
    MarkTaken();
}

void ZVCriticalSection::MarkTaken()
{
    m_owner = static_cast<uint64_t>(pthread_self());
    ++m_depth;
}

void ZVCriticalSection::MarkFreed()
{
    if (--m_depth == 0)
        m_owner = 0;
}
