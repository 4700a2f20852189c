#pragma once

#include "system/thread/ZVThread.h"

#include <cstddef>

#include <pthread.h>

// What a sort is without its elements: the stack of the ranges that wait to be sorted, and the helper thread, which is the thread
// that the object is. The caller's thread and the helper take ranges off the stack until there are none and neither can make a
// new one.
class ZVQSortBase : public ZVThread
{
public:
    ~ZVQSortBase() override;

protected:
    // A range of fewer elements is sorted by the thread that has it: it is done before a helper could have started.
    static constexpr ptrdiff_t SmallestSharedRange = 8192;

    // Without useHelper the whole sort stays in the calling thread.
    explicit ZVQSortBase(bool useHelper);

    // Sorts the range from the element at low to the one at high, both included, and returns when all is sorted and no helper
    // runs.
    void SortShared(void* low, void* high);
    // Leaves a range to whichever thread is free first, and starts the helper when there is none yet. False when there is no
    // place for the range or no helper is wanted.
    bool PushRange(void* low, void* high);

    // Sorts a range in the calling thread; parts of it may be pushed.
    virtual void SortRange(void* low, void* high) = 0;

    // The helper's work: it sorts pushed ranges until everything is sorted. The stop flag does not end it, a sort is never left
    // half done.
    bool Run() override;
    // True only within a sort: the helper is not to be started from outside.
    bool OnBeforeStart() override;
    void OnAfterExit() override;
    // The helper keeps the priority of the thread that sorts, which would else wait for a slower one.
    bool ApplyPriority(int32_t level) override;

private:
    static constexpr int32_t MaximumRanges = 124;

    enum class Helper
    {
        None,
        NotStarted,
        Running,
        Left,
        Refused,  // the system had no thread to give
    };

    class HelperEnd;

    void SortPushedRanges();
    bool TakeRange(void*& low, void*& high);
    bool IsEverythingSorted() const;
    void EndHelper();

    const bool m_useHelper;
    // All of these belong to the thread's critical section; the condition tells of every change that a thread can wait for.
    pthread_cond_t m_changed = PTHREAD_COND_INITIALIZER;
    Helper m_helper = Helper::None;
    int32_t m_idleCount = 0;
    int32_t m_rangeCount = 0;
    void* m_low[MaximumRanges] = {};
    void* m_high[MaximumRanges] = {};
};
