#include "system/thread/ZVThread.h"

#include "system/log/ZVLog.h"
#include "system/thread/ZVThreadPriority.h"
#include "system/thread/ZVTimer.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

namespace
{
constexpr ZVLogSource StartThreadSource {ZVLogCategory::General, L"ZVThread::StartThread"};
constexpr ZVLogSource StopSource {ZVLogCategory::General, L"ZVThread::Stop"};

constexpr int32_t ExitPollInterval = 10;
constexpr int32_t WaitPollInterval = 10;
constexpr int32_t IdleBodyInterval = 100;

// The object whose body runs in the calling thread, so that the body is recognised as the caller even after it was abandoned.
thread_local const ZVThread* t_object = nullptr;

uint64_t CallersHandle()
{
    return static_cast<uint64_t>(pthread_self());
}

void Sleep(int32_t milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// A negative limit, in milliseconds, never runs out.
bool HasRunOut(ZVTimer& timer, int32_t limit)
{
    return limit >= 0 && timer.GetElapsed(false) * 1000.0 >= limit;
}

// The attributes of a detached thread.
class Attributes
{
public:
    Attributes()
    {
        pthread_attr_init(&m_attributes);
        pthread_attr_setdetachstate(&m_attributes, PTHREAD_CREATE_DETACHED);
    }

    explicit Attributes(ZVThreadPriority::Scheduling scheduling) : Attributes()
    {
        sched_param parameter {};
        parameter.sched_priority = scheduling.StaticPriority;
        pthread_attr_setinheritsched(&m_attributes, PTHREAD_EXPLICIT_SCHED);
        pthread_attr_setschedpolicy(&m_attributes, scheduling.Policy);
        pthread_attr_setschedparam(&m_attributes, &parameter);
    }

    ~Attributes() { pthread_attr_destroy(&m_attributes); }

    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const pthread_attr_t* Get() const { return &m_attributes; }

private:
    pthread_attr_t m_attributes;
};
}

ZVThread::ZVThread(bool start)
{
    if (start)
        ZVThread::Start(0, false, ZVThreadPriority::Normal);
}

ZVThread::~ZVThread()
{
    ZVThread::Stop(NoTimeout);
}

// --- Start ---------------------------------------------------------------------------------------------------------------------

bool ZVThread::Start(uint32_t argument, bool restart, int32_t priority)
{
    m_argument = argument;
    if (m_handle != 0 && !restart)
        return true;
    Stop(NoTimeout);

    const ZVCriticalSectionLock lock(m_criticalSection);
    // Either the body itself calls this, or somebody else was faster and has started a thread.
    if (m_handle != 0)
        return true;
    SetStopFlag(false);
    if (!OnBeforeStart())
        return false;
    m_event = std::make_shared<ZVEvent>(false);
    m_finished = false;
    m_result = false;
    if (StartThread(priority))
        return true;
    // Nobody would ever signal it, so a wait would not end.
    m_event.reset();
    return false;
}

bool ZVThread::StartThread(int32_t priority)
{
    const Attributes wanted(ZVThreadPriority::SchedulingOf(priority));
    const Attributes plain;
    bool isCreated = false;
    {
        // The new thread begins by taking this lock, so it does not go on before its handle is stored.
        const ZVCriticalSectionLock lock(m_criticalSection);
        ++m_startedCount;
        m_priority = priority;
        pthread_t thread {};
        isCreated = pthread_create(&thread, wanted.Get(), ThreadStart, this) == 0 ||
                    pthread_create(&thread, plain.Get(), ThreadStart, this) == 0;
        if (isCreated)
            m_handle = static_cast<uint64_t>(thread);
        else
            --m_startedCount;
    }
    if (!isCreated)
        StartThreadSource.Log("Error creating thread!");
    return isCreated;
}

// --- The new thread ------------------------------------------------------------------------------------------------------------

// The exit function unwinds this frame, possibly with an unwinder from another library than this code is linked with: nothing
// that needs cleaning up may live here.
void* ZVThread::ThreadStart(void* object)
{
    const ExitFunction exitFunction = static_cast<ZVThread*>(object)->RunThread();
    if (exitFunction != nullptr)
        exitFunction(nullptr);
    return nullptr;
}

ZVThread::ExitFunction ZVThread::RunThread()
{
    int32_t priority = 0;
    {
        const ZVCriticalSectionLock lock(m_criticalSection);
        priority = m_priority;
    }
    t_object = this;
    const ExitFunction exitFunction = GetExitFunction();
    RegisterThread(GetArgument());
    ApplyPriority(priority);
    {
        const ZVCriticalSectionLock lock(m_criticalSection);
        m_isInRun = IsCallersRun();
    }
    KeepResult(Run());
    OnAfterExit();

    // From here on the object may be gone. An abandoned thread leaves the handle of the thread that came after it alone.
    uint64_t handle = CallersHandle();
    m_handle.compare_exchange_strong(handle, 0);
    return exitFunction;
}

void ZVThread::KeepResult(bool result)
{
    const ZVCriticalSectionLock lock(m_criticalSection);
    if (!IsCallersRun())
        return;
    m_result = result;
    m_finished = true;
    m_isInRun = false;
}

bool ZVThread::IsCallersRun() const
{
    return m_handle == CallersHandle();
}

// --- Stop ----------------------------------------------------------------------------------------------------------------------

bool ZVThread::Stop(int32_t timeout)
{
    int32_t startedCount = 0;
    {
        const ZVCriticalSectionLock lock(m_criticalSection);
        startedCount = m_startedCount;
        if (startedCount < 1)
            return true;
        if (!m_stopFlag || m_event == nullptr)
            SetStopFlag(true);
    }
    if (t_object == this)
        return false;
    WaitOrAbandon(startedCount, timeout == NoTimeout ? m_timeout.load() : timeout);
    return CloseRun(startedCount);
}

// The started count tells one thread from another, because the system uses handles again. A thread that somebody else starts
// meanwhile was not asked to stop, so nobody waits for it here.
void ZVThread::WaitOrAbandon(int32_t startedCount, int32_t timeout)
{
    ZVTimer timer;
    while (m_handle != 0 && m_startedCount == startedCount)
    {
        if (HasRunOut(timer, timeout) && OnStopTimeout())
        {
            Abandon(startedCount, timeout);
            return;
        }
        Sleep(std::max(m_pollInterval.load(), 1));
    }
}

void ZVThread::Abandon(int32_t startedCount, int32_t timeout)
{
    uint64_t handle = 0;
    {
        const ZVCriticalSectionLock lock(m_criticalSection);
        if (m_startedCount == startedCount)
            handle = m_handle.exchange(0);
        if (handle == 0)
            return;
        m_isInRun = false;
    }
    StopSource.Log("Hard killing thread (handle=%x), it exceeded timeout=%d MS", handle, timeout);
    fprintf(stderr, "Hard killing thread (handle=%lx), it exceeded timeout=%d MS\n", static_cast<unsigned long>(handle), timeout);
}

bool ZVThread::CloseRun(int32_t startedCount)
{
    OnCleanUp(m_cleanUpFlag);
    const ZVCriticalSectionLock lock(m_criticalSection);
    // If somebody has started a new thread meanwhile, the event and the result belong to that one.
    if (m_startedCount != startedCount)
        return false;
    m_event.reset();
    return m_result.exchange(false);
}

void ZVThread::SetStopFlag(bool value)
{
    const ZVCriticalSectionLock lock(m_criticalSection);
    m_stopFlag = value;
    if (m_event == nullptr)
        return;
    if (value)
        m_event->Signal();
    else
        m_event->Clear();
}

bool ZVThread::GetStopFlag() const
{
    return m_stopFlag || (t_object == this && !IsCallersRun());
}

// --- Wait ----------------------------------------------------------------------------------------------------------------------

void ZVThread::WaitForExit() const
{
    while (m_handle != 0)
        Sleep(ExitPollInterval);
}

bool ZVThread::Wait(int32_t milliseconds, const ZVThread* otherThread)
{
    const std::shared_ptr<ZVEvent> event = otherThread == nullptr ? GetEventUnlessStopped() : nullptr;
    return event != nullptr ? event->Wait(milliseconds) : WaitByPolling(milliseconds, otherThread);
}

bool ZVThread::Wait(int32_t milliseconds)
{
    return Wait(milliseconds, nullptr);
}

bool ZVThread::Wait()
{
    return Wait(-1, nullptr);
}

bool ZVThread::WaitByPolling(int32_t milliseconds, const ZVThread* otherThread)
{
    ZVTimer timer;
    for (;;)
    {
        if (GetStopFlag())
            return true;
        const std::shared_ptr<ZVEvent> otherEvent = otherThread == nullptr ? nullptr : otherThread->GetEvent();
        if (otherEvent != nullptr && otherEvent->IsSignalled())
            return true;
        if (!IsRunning() || HasRunOut(timer, milliseconds))
            return false;
        Sleep(WaitPollInterval);
    }
}

std::shared_ptr<ZVEvent> ZVThread::GetEvent() const
{
    const ZVCriticalSectionLock lock(m_criticalSection);
    return m_event;
}

// In one step: otherwise a body that is abandoned in between would wait for the event of the thread that came after it.
std::shared_ptr<ZVEvent> ZVThread::GetEventUnlessStopped() const
{
    const ZVCriticalSectionLock lock(m_criticalSection);
    return GetStopFlag() ? nullptr : m_event;
}

// --- State and hooks -----------------------------------------------------------------------------------------------------------

bool ZVThread::ThreadBody()
{
    return OnThreadBody();
}

bool ZVThread::RegisterThread(uint32_t)
{
    return false;
}

bool ZVThread::ApplyPriority(int32_t level)
{
    return ZVThreadPriority::ApplyToCaller(level);
}

bool ZVThread::IsRunning() const
{
    return m_handle != 0;
}

bool ZVThread::GetFinished() const
{
    return m_finished;
}

uint64_t ZVThread::GetHandle() const
{
    return m_handle;
}

bool ZVThread::GetHandleOut(uint64_t* value) const
{
    if (value == nullptr)
        return false;
    *value = m_handle;
    return true;
}

bool ZVThread::ReservedHook()
{
    return true;
}

bool ZVThread::OnStopTimeout()
{
    return true;
}

int32_t ZVThread::GetStartedCount() const
{
    return m_startedCount;
}

void ZVThread::OnCleanUp(bool) {}

void ZVThread::SetPollInterval(int32_t milliseconds)
{
    m_pollInterval = milliseconds;
}

void ZVThread::SetFinished(bool value)
{
    m_finished = value;
}

void ZVThread::SetResult(bool value)
{
    m_result = value;
}

void ZVThread::SetCleanUpFlag(bool value)
{
    m_cleanUpFlag = value;
}

bool ZVThread::Run()
{
    while (!GetStopFlag())
        Sleep(IdleBodyInterval);
    return true;
}

bool ZVThread::OnThreadBody()
{
    return Run();
}

bool ZVThread::OnBeforeStart()
{
    return true;
}

void ZVThread::OnAfterExit() {}

ZVThread::ExitFunction ZVThread::GetExitFunction() const
{
    return pthread_exit;
}
