#include "siblings/player/CDelivery.h"

#include "system/log/ZVLog.h"
#include "system/thread/ZVStuckThread.h"

#include <exception>
#include <system_error>
#include <utility>

namespace
{
constexpr ZVLogSource StartSource {ZVLogCategory::Media, L"CDelivery::Start"};
constexpr ZVLogSource RunSource {ZVLogCategory::Media, L"CDelivery::Run"};
constexpr ZVLogSource StopSource {ZVLogCategory::Media, L"CDelivery::TakeBack"};

// What the output knows already.
struct Announced
{
    int32_t Width = 0;
    int32_t Height = 0;
};

void Deliver(IZVVideoPlayerVideoOutput& output, const ZVVideoFrame& frame, Announced& announced)
{
    if (announced.Width == 0)
        output.OnSeekDone();
    if (announced.Width != frame.Width || announced.Height != frame.Height)
        output.OnFormatChange();
    announced = {frame.Width, frame.Height};
    output.OnVideoFrame(frame);
}

IFrameSource::Outcome GetNext(IFrameSource& source, ZVVideoFrame& frame)
{
    try
    {
        return source.Next(frame);
    }
    catch (const std::exception& exception)
    {
        RunSource.Log("A frame cannot be fetched: %s", exception.what());
        return IFrameSource::Outcome::Failure;
    }
}
}

CDelivery::~CDelivery()
{
    TakeBack();
}

bool CDelivery::Start(std::unique_ptr<IFrameSource> source, IZVVideoPlayerVideoOutput& output)
{
    m_session = std::make_shared<Session>();
    m_session->Source = std::move(source);
    m_session->Output = &output;
    try
    {
        m_thread = std::thread(Run, m_session);
    }
    catch (const std::system_error& error)
    {
        StartSource.Log("There is no thread to deliver frames on: %s", error.what());
        m_session.reset();
        return false;
    }
    return true;
}

void CDelivery::Stop()
{
    if (m_session == nullptr)
        return;
    m_session->Source->Cancel();
    const std::lock_guard lock(m_session->Mutex);
    if (m_session->Output == nullptr)
        return;
    m_session->Output->OnStop();
    m_session->Output = nullptr;
}

std::unique_ptr<IFrameSource> CDelivery::TakeBack()
{
    Stop();
    if (m_session == nullptr)
        return nullptr;
    std::unique_ptr<IFrameSource> source;
    if (WaitForEnd())
    {
        m_thread.join();
        source = std::move(m_session->Source);
    }
    else
        Abandon();
    m_session.reset();
    return source;
}

bool CDelivery::WaitForEnd()
{
    std::unique_lock lock(m_session->EndMutex);
    return m_session->EndCondition.wait_for(lock, std::chrono::milliseconds(m_patience), [this] { return m_session->HasEnded; });
}

void CDelivery::Abandon()
{
    StopSource.Log("The decoder of a film does not come back; its thread is left alone");
    if (!ZVStuckThread::Abandon(m_thread))
        StopSource.Log("The process may not end cleanly");
}

// Calls the output unless the delivery is stopped; then false.
template <class Function>
bool CDelivery::Call(Session& session, Function function)
{
    const std::lock_guard lock(session.Mutex);
    if (session.Output == nullptr)
        return false;
    function(*session.Output);
    return true;
}

void CDelivery::Run(const std::shared_ptr<Session>& session)
{
    using Outcome = IFrameSource::Outcome;
    using Output = IZVVideoPlayerVideoOutput;
    bool goesOn = Call(*session, [](Output& output) { output.OnPlay(); });
    Announced announced;
    while (goesOn)
    {
        ZVVideoFrame frame;
        const Outcome outcome = GetNext(*session->Source, frame);
        if (outcome == Outcome::Failure)
            Call(*session, [](Output& output) { output.OnError(); });
        if (outcome != Outcome::Frame)
        {
            Call(*session, [](Output& output) { output.OnEndOfStream(); });
            break;
        }
        goesOn = Call(*session, [&](Output& output) { Deliver(output, frame, announced); });
    }
    const std::lock_guard lock(session->EndMutex);
    session->HasEnded = true;
    session->EndCondition.notify_all();
}
