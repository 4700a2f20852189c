#pragma once

#include "system/thread/ZVCriticalSection.h"
#include "system/thread/ZVEvent.h"

#include <atomic>
#include <cstdint>
#include <memory>

// The base of every worker thread: a body, a stop flag that the body polls, an event to wait on, and a stop that asks first and
// abandons the thread in the end, when a time limit says so. Start, Stop and SetStopFlag may be called from any thread.
//
// A class that derives from this gives the work in Run. Its destructor calls Stop itself, because the base class's Stop comes
// after its members are gone; and it does not start the thread by the base constructor, which runs before its members are there.
//
// A thread that Stop abandoned goes on until it ends by itself and still uses the object, so the object must live until then. It
// finds GetStopFlag set whatever happens to the object, a new start among it, and its result no longer counts. Who cannot promise
// that the object lives lets Stop wait without a limit.
//
// The order of the virtual functions is fixed.
class ZVThread
{
public:
    // Ends the calling thread, with a result that nobody reads.
    using ExitFunction = void (*)(void* result);

    // A time limit for Stop that means the stored one, and as the stored one, none.
    static constexpr int32_t NoTimeout = -1;

    // With start the thread runs at once, with argument 0 and normal priority.
    explicit ZVThread(bool start = false);

    // Does the thread's work in the calling thread and gives its result.
    virtual bool ThreadBody();
    // Stops the thread with the stored time limit.
    virtual ~ZVThread();

    ZVThread(const ZVThread&) = delete;
    ZVThread& operator=(const ZVThread&) = delete;

    // Starts the thread with an argument for its body and a level of ZVThreadPriority. A thread that runs is left alone, or with
    // restart stopped first; a body cannot restart itself. False when OnBeforeStart refused or the system has no thread to give;
    // true when a thread runs now.
    virtual bool Start(uint32_t argument, bool restart, int32_t priority);
    // Asks the thread to stop and waits for its end, with a limit in milliseconds: NoTimeout takes the stored limit, another
    // negative one waits for as long as it takes. After the limit the thread is abandoned if OnStopTimeout agrees. A thread that
    // somebody else starts meanwhile is not waited for. Gives the body's result; true when no thread was ever started, false for
    // one that was abandoned or whose result an earlier call has fetched. Called by the body itself it only sets the stop flag
    // and gives false.
    virtual bool Stop(int32_t timeout);
    // Sets or clears the stop flag, and with it the event.
    virtual void SetStopFlag(bool value);
    // Makes the thread known to the thread services of the tools library. Called by the new thread with its argument. This tools
    // library has none, so the base form gives false.
    virtual bool RegisterThread(uint32_t argument);
    // Gives the calling thread the priority of a level. Called by the new thread; the result is for other callers.
    virtual bool ApplyPriority(int32_t level);
    virtual bool IsRunning() const;
    // Waits without a limit until no thread runs. Not for the body.
    virtual void WaitForExit() const;
    // Waits until the stop flag is set or, if one is given, until the other thread's event is signalled: true. False after that
    // many milliseconds, for which a negative value means no limit. False also once no thread runs, if another thread is
    // given or the wait began without a started thread.
    virtual bool Wait(int32_t milliseconds, const ZVThread* otherThread);
    virtual bool Wait(int32_t milliseconds);
    virtual bool Wait();
    // True once the body has returned, until the next start.
    virtual bool GetFinished() const;
    // The thread, a pthread_t, or 0 when none runs.
    virtual uint64_t GetHandle() const;
    // The same; false, and nothing done, for a null pointer.
    virtual bool GetHandleOut(uint64_t* value) const;
    virtual bool GetStopFlag() const;

protected:
    // An unused place that gives true.
    virtual bool ReservedHook();
    // Asked, once a poll interval, whether a thread that exceeded its time limit may be abandoned.
    virtual bool OnStopTimeout();

public:
    // How many threads the object has started.
    virtual int32_t GetStartedCount() const;

protected:
    // Stop has ended, with the thread gone or abandoned; somebody else may have started a new one already. flag is what
    // SetCleanUpFlag set.
    virtual void OnCleanUp(bool flag);

public:
    // Milliseconds between two tests in Stop; less than 1 counts as 1.
    virtual void SetPollInterval(int32_t milliseconds);
    virtual void SetFinished(bool value);
    virtual void SetResult(bool value);
    // What OnCleanUp is told; true by default.
    virtual void SetCleanUpFlag(bool value);

protected:
    // The work of the thread. It must not throw. The base form does nothing until the stop flag is set, looking every 100 ms, and
    // gives true.
    virtual bool Run();
    // What ThreadBody does: the base form calls Run.
    virtual bool OnThreadBody();
    // Called with the lock held when a thread is about to be started; false keeps it from starting.
    virtual bool OnBeforeStart();
    // Makes the thread, for Start. When the system refuses the scheduling of the level the thread gets the ordinary one. False,
    // and a line in the log, when there is none to be had.
    virtual bool StartThread(int32_t priority);
    // The thread's last call, after which Stop takes it for ended.
    virtual void OnAfterExit();
    // The function that ends the thread, asked for before the body runs. It is called when the object may be gone already.
    virtual ExitFunction GetExitFunction() const;

public:
    // The limit in milliseconds that Stop takes for NoTimeout.
    void SetTimeout(int32_t milliseconds) { m_timeout = milliseconds; }
    // True while Run is executed by a thread that was not abandoned.
    bool IsInRun() const { return m_isInRun; }

protected:
    // The argument of the last Start.
    uint32_t GetArgument() const { return m_argument; }
    // The lock of the object. Start must not be asked to restart, nor Stop called, by a thread that holds it while a thread runs.
    ZVCriticalSection& GetCriticalSection() { return m_criticalSection; }

private:
    static void* ThreadStart(void* object);

    ExitFunction RunThread();
    void KeepResult(bool result);
    void WaitOrAbandon(int32_t startedCount, int32_t timeout);
    void Abandon(int32_t startedCount, int32_t timeout);
    bool CloseRun(int32_t startedCount);
    bool WaitByPolling(int32_t milliseconds, const ZVThread* otherThread);
    std::shared_ptr<ZVEvent> GetEvent() const;
    std::shared_ptr<ZVEvent> GetEventUnlessStopped() const;
    bool IsCallersRun() const;

    std::atomic<uint64_t> m_handle = 0;
    std::atomic<bool> m_stopFlag = false;
    mutable ZVCriticalSection m_criticalSection;
    // Shared with every wait under way, since an abandoned thread can still be in one when Stop drops the event.
    std::shared_ptr<ZVEvent> m_event;
    std::atomic<int32_t> m_timeout = NoTimeout;
    std::atomic<int32_t> m_pollInterval = 20;
    std::atomic<int32_t> m_startedCount = 0;
    std::atomic<bool> m_finished = false;
    std::atomic<bool> m_result = false;
    std::atomic<bool> m_cleanUpFlag = true;
    std::atomic<uint32_t> m_argument = 0;
    std::atomic<bool> m_isInRun = false;
    int32_t m_priority = 0;
};
