#include "system/thread/ZVQSortBase.h"

#include "system/thread/ZVThreadPriority.h"

#include <chrono>
#include <thread>

// Ends the helper when the sort ends, by an exception too: nobody may touch the elements after that.
class ZVQSortBase::HelperEnd
{
public:
    explicit HelperEnd(ZVQSortBase& sort) : m_sort(sort) {}
    ~HelperEnd() { m_sort.EndHelper(); }

    HelperEnd(const HelperEnd&) = delete;
    HelperEnd& operator=(const HelperEnd&) = delete;

private:
    ZVQSortBase& m_sort;
};

ZVQSortBase::ZVQSortBase(bool useHelper) : m_useHelper(useHelper) {}

ZVQSortBase::~ZVQSortBase()
{
    Stop(NoTimeout);
    pthread_cond_destroy(&m_changed);
}

void ZVQSortBase::SortShared(void* low, void* high)
{
    if (!m_useHelper)
    {
        SortRange(low, high);
        return;
    }
    {
        const ZVCriticalSectionLock lock(GetCriticalSection());
        m_helper = Helper::NotStarted;
        m_idleCount = 0;
    }
    const HelperEnd helperEnd(*this);
    SortRange(low, high);
    SortPushedRanges();
}

bool ZVQSortBase::PushRange(void* low, void* high)
{
    const ZVCriticalSectionLock lock(GetCriticalSection());
    if (m_helper == Helper::None || m_rangeCount == MaximumRanges)
        return false;
    m_low[m_rangeCount] = low;
    m_high[m_rangeCount] = high;
    ++m_rangeCount;
    if (m_helper == Helper::NotStarted)
        m_helper = Start(0, false, ZVThreadPriority::Normal) ? Helper::Running : Helper::Refused;
    pthread_cond_signal(&m_changed);
    return true;
}

void ZVQSortBase::SortPushedRanges()
{
    void* low = nullptr;
    void* high = nullptr;
    while (TakeRange(low, high))
        SortRange(low, high);
}

// Waits for a range. False when no more will come; the thread then still counts as idle.
bool ZVQSortBase::TakeRange(void*& low, void*& high)
{
    const ZVCriticalSectionLock lock(GetCriticalSection());
    ++m_idleCount;
    while (m_rangeCount == 0 && !IsEverythingSorted())
        GetCriticalSection().WaitFor(m_changed);
    if (m_rangeCount == 0)
    {
        pthread_cond_broadcast(&m_changed);
        return false;
    }
    --m_idleCount;
    --m_rangeCount;
    low = m_low[m_rangeCount];
    high = m_high[m_rangeCount];
    return true;
}

// Only a thread that sorts can push a range.
bool ZVQSortBase::IsEverythingSorted() const
{
    return m_idleCount >= (m_helper == Helper::Running ? 2 : 1);
}

bool ZVQSortBase::Run()
{
    SortPushedRanges();
    return true;
}

bool ZVQSortBase::OnBeforeStart()
{
    return m_helper == Helper::NotStarted;
}

void ZVQSortBase::OnAfterExit()
{
    const ZVCriticalSectionLock lock(GetCriticalSection());
    m_helper = Helper::Left;
    pthread_cond_broadcast(&m_changed);
}

bool ZVQSortBase::ApplyPriority(int32_t)
{
    return true;
}

void ZVQSortBase::EndHelper()
{
    {
        const ZVCriticalSectionLock lock(GetCriticalSection());
        // A helper that has left its work still counts: its thread is not gone yet, and the next sort could take it for its own.
        const bool wasStarted = m_helper == Helper::Running || m_helper == Helper::Left;
        m_rangeCount = 0;
        m_idleCount = 2;
        pthread_cond_broadcast(&m_changed);
        while (m_helper == Helper::Running)
            GetCriticalSection().WaitFor(m_changed);
        m_helper = Helper::None;
        if (!wasStarted)
            return;
    }
    // The helper has only a few instructions left. The poll interval of Stop would be much longer than that.
    while (IsRunning())
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    Stop(NoTimeout);
}
