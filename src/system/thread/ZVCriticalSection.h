#pragma once

#include <atomic>
#include <cstdint>

#include <pthread.h>

// The lock of the product's objects: a recursive mutex, with the depth to which it is locked and the thread that holds it. Those
// two may be read without the lock: by a debugger in a stuck process, and by a thread that asks whether it holds the lock itself.
class ZVCriticalSection
{
public:
    ZVCriticalSection();
    // No thread may hold the lock or wait for it.
    ~ZVCriticalSection();

    ZVCriticalSection(const ZVCriticalSection&) = delete;
    ZVCriticalSection& operator=(const ZVCriticalSection&) = delete;

    // Waits until no other thread holds the lock, and takes it. Each Lock needs an Unlock by the same thread.
    void Lock();
    void Unlock();

    // Frees the lock, waits until the condition is signalled, and takes the lock again. The caller must hold it exactly once, and
    // must check in a loop for what it waits for: the call may also return without a signal.
    void WaitFor(pthread_cond_t& condition);

    // How many times the thread that holds the lock has taken it; 0 when it is free.
    int32_t GetDepth() const { return m_depth; }
    // The thread that holds the lock, a pthread_t; 0 when it is free.
    uint64_t GetOwner() const { return m_owner; }
    bool IsHeldByCaller() const { return m_owner == static_cast<uint64_t>(pthread_self()); }

private:
    void MarkTaken();
    void MarkFreed();

    pthread_mutex_t m_mutex;
    // Written only by the holder, and each write is a full fence.
    std::atomic<int32_t> m_depth = 0;
    std::atomic<uint64_t> m_owner = 0;
};

// Holds a critical section for a scope.
class ZVCriticalSectionLock
{
public:
    explicit ZVCriticalSectionLock(ZVCriticalSection& section) : m_section(section) { m_section.Lock(); }
    ~ZVCriticalSectionLock() { m_section.Unlock(); }

    ZVCriticalSectionLock(const ZVCriticalSectionLock&) = delete;
    ZVCriticalSectionLock& operator=(const ZVCriticalSectionLock&) = delete;

private:
    ZVCriticalSection& m_section;
};
