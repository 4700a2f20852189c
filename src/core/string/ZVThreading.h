#pragma once

#include <atomic>
#include <cstdint>
#include <sys/single_threaded.h>

// Shared counters and fences of the core library. A process that never started a thread, as most workers, has no other thread
// that could see its stores in the wrong order; there a plain instruction does the same at a fraction of the cost.

// Raises the counter by one with full ordering.
inline void ZVAtomicIncrement(std::atomic<int32_t>& counter)
{
    if (__libc_single_threaded)
        counter.store(counter.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    else
        counter.fetch_add(1, std::memory_order_seq_cst);
}

// Lowers the counter by one with full ordering and returns its new value.
inline int32_t ZVAtomicDecrement(std::atomic<int32_t>& counter)
{
    if (!__libc_single_threaded)
        return counter.fetch_sub(1, std::memory_order_seq_cst) - 1;
    const int32_t lowered = counter.load(std::memory_order_relaxed) - 1;
    counter.store(lowered, std::memory_order_relaxed);
    return lowered;
}

// A full memory fence.
inline void ZVMemoryFence()
{
    if (!__libc_single_threaded)
        std::atomic_thread_fence(std::memory_order_seq_cst);
}
