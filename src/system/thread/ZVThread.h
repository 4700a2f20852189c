#pragma once

#include "system/thread/ZVCriticalSection.h"
#include "system/thread/ZVEvent.h"

#include <atomic>
#include <cstdint>
#include <memory>

// The base of every worker thread: a body, a stop flag that the body polls, an event to wait for, and a stop that first asks the
// thread to end and, after a time limit, abandons it. Start, Stop and SetStopFlag may be called from any thread.
//
// A derived class does its work in Run. Its destructor must call Stop, because the base class stops the thread only after the
// members of the derived class are gone. For the same reason it must not start the thread through the base constructor, which
// runs before those members exist.
//
// An abandoned thread goes on until it ends by itself and still uses the object, so the object must live until then. For that
// thread GetStopFlag stays true whatever happens to the object, even a new start, and its result no longer counts. Whoever cannot
// promise that the object lives must let Stop wait without a limit.
//
// The order of the virtual functions is fixed.
class ZVThread
{
public:
    // Ends the calling thread. Nobody reads the result.
    using ExitFunction = void (*)(void* result);

    // As the time limit for Stop this means the stored limit; as the stored limit it means none.
    static constexpr int32_t NoTimeout = -1;

    // With start the thread starts at once, with argument 0 and normal priority.
    explicit ZVThread(bool start = false);

    // Does the thread's work in the calling thread and returns its result.
    virtual bool ThreadBody();
    // Stops the thread with the stored time limit.
    virtual ~ZVThread();

    ZVThread(const ZVThread&) = delete;
    ZVThread& operator=(const ZVThread&) = delete;

    // Starts the thread with an argument for its body and a level of ZVThreadPriority. If a thread runs already, it is left
    // alone, or with restart it is stopped first; a body cannot restart itself. True when a thread runs now; false when
    // OnBeforeStart refuses or the system has no thread left.
    virtual bool Start(uint32_t argument, bool restart, int32_t priority);
    // Asks the thread to stop and waits for its end, with a limit in milliseconds: NoTimeout means the stored limit, any other
    // negative value no limit. After the limit the thread is abandoned if OnStopTimeout agrees. A thread that somebody else
    // starts meanwhile is not waited for. Returns the body's result; true when no thread was ever started, false for one that was
    // abandoned or whose result an earlier call has fetched. When the body itself calls this, it only sets the stop flag and
    // returns false.
    virtual bool Stop(int32_t timeout);
    // Sets or clears the stop flag, and with it the event.
    virtual void SetStopFlag(bool value);
    // Makes the thread known to the thread services of the tools library. The new thread calls it with its argument. There are no
    // such services, so the base form returns false.
    virtual bool RegisterThread(uint32_t argument);
    // Gives the calling thread the priority of a level. The new thread calls it and ignores the result.
    virtual bool ApplyPriority(int32_t level);
    virtual bool IsRunning() const;
    // Waits without a limit until no thread runs. Not for the body.
    virtual void WaitForExit() const;
    // Waits until the stop flag is set or, if another thread is given, until that thread's event is signalled; then true. False
    // after that many milliseconds, where a negative value means no limit. Also false as soon as no thread runs, if another
    // thread is given or no thread had been started when the wait began.
    virtual bool Wait(int32_t milliseconds, const ZVThread* otherThread);
    virtual bool Wait(int32_t milliseconds);
    virtual bool Wait();
    // True once the body has returned, until the next start.
    virtual bool GetFinished() const;
    // The thread, a pthread_t, or 0 when none runs.
    virtual uint64_t GetHandle() const;
    // The same through a pointer; false for a null pointer.
    virtual bool GetHandleOut(uint64_t* value) const;
    virtual bool GetStopFlag() const;

protected:
    // An unused slot; returns true.
    virtual bool ReservedHook();
    // Decides whether a thread that has exceeded its time limit may be abandoned. Asked once in every poll interval.
    virtual bool OnStopTimeout();

public:
    // How many threads the object has started.
    virtual int32_t GetStartedCount() const;

protected:
    // Called at the end of Stop, when the thread is gone or abandoned; somebody else may have started a new one already. flag is
    // what SetCleanUpFlag set.
    virtual void OnCleanUp(bool flag);

public:
    // Milliseconds between two tests in Stop; less than 1 counts as 1.
    virtual void SetPollInterval(int32_t milliseconds);
    virtual void SetFinished(bool value);
    virtual void SetResult(bool value);
    // What OnCleanUp is given; true by default.
    virtual void SetCleanUpFlag(bool value);

protected:
    // The work of the thread. It must not throw. The base form waits until the stop flag is set, which it checks every 100 ms,
    // and returns true.
    virtual bool Run();
    // What ThreadBody calls; the base form calls Run.
    virtual bool OnThreadBody();
    // Called with the lock held before a thread is started; false keeps it from starting.
    virtual bool OnBeforeStart();
    // Makes the thread for Start. When the system refuses the scheduling of the level, the thread gets the ordinary one. False,
    // with a line in the log, when the system has no thread left.
    virtual bool StartThread(int32_t priority);
    // The last call of the thread; after it Stop considers the thread ended.
    virtual void OnAfterExit();
    // The function that ends the thread. It is asked for before the body runs, because at the end the object may be gone.
    virtual ExitFunction GetExitFunction() const;

public:
    // The limit in milliseconds that NoTimeout stands for in Stop.
    void SetTimeout(int32_t milliseconds) { m_timeout = milliseconds; }
    // True while a thread that was not abandoned is in Run.
    bool IsInRun() const { return m_isInRun; }

protected:
    // The argument of the last Start.
    uint32_t GetArgument() const { return m_argument; }
    // The lock of the object. Whoever holds it must not call Stop, nor ask Start to restart, while a thread runs.
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
    // Shared with every wait: an abandoned thread can still be in one when Stop drops the event.
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
