#pragma once

#include "siblings/player/IFrameSource.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

// Delivers the frames of a source to an output, on a thread of its own.
//
// A decoder can hang in a stranger's film, and nothing frees its thread then. Such a thread is left alone with the source, and
// nobody waits for it any more: the process ends without it.
class CDelivery
{
public:
    // How long the end of the thread is waited for. No decoder takes as long for a frame.
    static constexpr int32_t PatienceMilliseconds = 2000;

    explicit CDelivery(int32_t patienceMilliseconds = PatienceMilliseconds) : m_patience(patienceMilliseconds) {}
    CDelivery(const CDelivery&) = delete;
    CDelivery& operator=(const CDelivery&) = delete;
    // Stops, and waits for the thread or leaves it.
    ~CDelivery();

    // Begins to deliver. The output outlives the delivery. False, with the reason in the log, when the system has no thread left.
    // Nothing is being delivered yet.
    bool Start(std::unique_ptr<IFrameSource> source, IZVVideoPlayerVideoOutput& output);

    // Ends the delivery: waits for the output when it is in a call, and for nothing else. There is no call any more after it.
    void Stop();

    // Stops, waits for the thread and gives the source back. Null when nothing was delivered, and when the thread is stuck in a
    // decoder: then it keeps the source.
    std::unique_ptr<IFrameSource> TakeBack();

private:
    // What the thread and the delivery share; the thread may outlive the delivery.
    struct Session
    {
        std::unique_ptr<IFrameSource> Source;
        std::mutex Mutex;                             // held during each call of the output
        IZVVideoPlayerVideoOutput* Output = nullptr;  // null once the delivery is stopped
        std::mutex EndMutex;
        std::condition_variable EndCondition;
        bool HasEnded = false;
    };

    static void Run(const std::shared_ptr<Session>& session);
    template <class Function>
    static bool Call(Session& session, Function function);
    bool WaitForEnd();
    void Abandon();

    const int32_t m_patience;
    std::shared_ptr<Session> m_session;
    std::thread m_thread;
};
