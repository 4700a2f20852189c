#pragma once

#include "system/thread/ZVThread.h"

#include <cstddef>

#include <pthread.h>

// The part of a sort that does not depend on the elements: the stack of ranges that wait to be sorted, and the helper thread,
// which is the ZVThread itself. The caller's thread and the helper take ranges off the stack until it is empty and neither of
// them can add another one.
class ZVQSortBase : public ZVThread
{
public:
    ~ZVQSortBase() override;

protected:
    // A range of fewer elements is sorted by the thread that has it, which is done before a helper could have started.
    static constexpr ptrdiff_t SmallestSharedRange = 8192;

    // Without useHelper the whole sort stays in the calling thread.
    explicit ZVQSortBase(bool useHelper);

    // Sorts the range from the element at low to the one at high, both included. Returns when everything is sorted and no helper
    // runs any more.
    void SortShared(void* low, void* high);
    // Leaves a range to whichever thread is free first, and starts the helper if it does not run yet. False when the stack is
    // full or no helper is wanted.
    bool PushRange(void* low, void* high);

    // Sorts a range in the calling thread; parts of it may be pushed.
    virtual void SortRange(void* low, void* high) = 0;

    // The helper's work: it sorts pushed ranges until everything is sorted. It ignores the stop flag, because a sort is never
    // left half done.
    bool Run() override;
    // True only during a sort: nobody else is to start the helper.
    bool OnBeforeStart() override;
    void OnAfterExit() override;
    // The helper keeps the priority of the thread that sorts. With a lower one it would hold up that thread.
    bool ApplyPriority(int32_t level) override;

private:
    static constexpr int32_t MaximumRanges = 124;

    enum class Helper
    {
        None,
        NotStarted,
        Running,
        Left,
        Refused,  // the system had no thread left
    };

    class HelperEnd;

    void SortPushedRanges();
    bool TakeRange(void*& low, void*& high);
    bool IsEverythingSorted() const;
    void EndHelper();

    const bool m_useHelper;
    // The thread's critical section guards all of these. The condition is signalled with every change that a thread can wait for.
    pthread_cond_t m_changed = PTHREAD_COND_INITIALIZER;
    Helper m_helper = Helper::None;
    int32_t m_idleCount = 0;
    int32_t m_rangeCount = 0;
    void* m_low[MaximumRanges] = {};
    void* m_high[MaximumRanges] = {};
};
