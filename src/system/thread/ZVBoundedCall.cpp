#include "system/thread/ZVBoundedCall.h"

#include "system/thread/ZVStuckThread.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace
{
// What the caller and the thread share; the thread may outlive the caller.
struct Call
{
    std::function<void()> Function;
    std::mutex Mutex;
    std::condition_variable Condition;
    bool HasEnded = false;
    const char* Reason = nullptr;

    void End(const char* reason)
    {
        const std::lock_guard lock(Mutex);
        HasEnded = true;
        Reason = reason;
        Condition.notify_all();
    }
};

// The call that the thread is there for.
thread_local Call* t_call = nullptr;

void RunOnThread(const std::shared_ptr<Call>& call)
{
    t_call = call.get();
    call->Function();
    call->End(nullptr);
}

const char* WaitForEnd(Call& call, int32_t milliseconds)
{
    std::unique_lock lock(call.Mutex);
    const bool hasEnded =
        call.Condition.wait_for(lock, std::chrono::milliseconds(milliseconds), [&call] { return call.HasEnded; });
    return hasEnded ? call.Reason : "there was no answer in time";
}
}

const char* ZVBoundedCall::Run(std::function<void()> function, int32_t milliseconds)
{
    const auto call = std::make_shared<Call>();
    call->Function = std::move(function);
    std::thread thread;
    try
    {
        thread = std::thread(RunOnThread, call);
    }
    catch (const std::system_error&)
    {
        return "the system has no thread left";
    }
    const char* const reason = WaitForEnd(*call, milliseconds);
    if (reason == nullptr)
        thread.join();
    else
        ZVStuckThread::Abandon(thread);
    return reason;
}

void ZVBoundedCall::GiveUp(const char* reason)
{
    t_call->End(reason);
    while (true)
        pause();
}
