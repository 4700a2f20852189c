#include "video/thumbnail/CZVThumbGrabber.h"

#include "system/log/ZVLog.h"

#include <algorithm>
#include <chrono>
#include <sys/time.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Media, L"CZVThumbGrabber::TryAt"};

// Films open with black and with the signs of those who made them; a minute later something has begun.
constexpr int64_t SecondAttemptMs = 60'000;
// Films end with black too.
constexpr int64_t DistanceFromEndMs = 10'000;
// So many frames of one attempt may be blank. The next one ends it and is not looked at.
constexpr int32_t MaximumBlankFrames = 11;

// The moment that many milliseconds from now, on the clock of the day.
std::chrono::system_clock::time_point DeadlineAfter(int32_t milliseconds)
{
    timeval now {};
    gettimeofday(&now, nullptr);
    return std::chrono::system_clock::time_point(std::chrono::seconds(now.tv_sec) + std::chrono::microseconds(now.tv_usec) +
                                                 std::chrono::milliseconds(milliseconds));
}
}

CZVThumbGrabber::CZVThumbGrabber(IZVVideoPlayer& player, int32_t waitMs) : m_player(player), m_waitMs(waitMs)
{
    m_player.SetVideoOutput(this);
}

bool CZVThumbGrabber::Grab(int32_t timeMs, ZVImagePointer& image)
{
    TryAt(timeMs);
    if (!HasImage())
        TryAt(timeMs + SecondAttemptMs);
    const ZVCriticalSectionLock lock(m_imageLock);
    image = std::move(m_image);
    return image != nullptr;
}

void CZVThumbGrabber::TryAt(int64_t milliseconds)
{
    {
        const std::lock_guard lock(m_doneMutex);
        m_done = false;
    }
    m_frameCount = 0;
    // In a film that is shorter than the distance this is before its start, which the player takes for the start.
    const int64_t duration = m_player.GetDuration();
    const int64_t target = duration > 0 ? std::min(milliseconds, duration - DistanceFromEndMs) : milliseconds;
    m_player.Seek(target);
    if (m_player.Play(0))
        WaitUntilDone();
    // Without a lock, since the player's thread may be waiting for one.
    m_player.Stop();
    if (!HasImage())
        Source.Log("No picture was found from %d ms on; frames that came: %d", target, m_frameCount);
}

void CZVThumbGrabber::WaitUntilDone()
{
    std::unique_lock lock(m_doneMutex);
    m_doneCondition.wait_until(lock, DeadlineAfter(m_waitMs), [this] { return m_done.load(); });
    if (m_aborted)
        m_done = false;
}

void CZVThumbGrabber::SignalDone()
{
    const std::lock_guard lock(m_doneMutex);
    m_done = true;
    m_doneCondition.notify_one();
}

bool CZVThumbGrabber::HasImage()
{
    const ZVCriticalSectionLock lock(m_imageLock);
    return m_image != nullptr;
}

void CZVThumbGrabber::OnVideoFrame(const ZVVideoFrame& frame)
{
    if (HasImage())
        return;
    const ZVImagePointer image = ZVImages::Create();
    const bool isShown = image != nullptr && image->SetFromPixels(frame.Pixels, frame.Width, frame.Height, frame.Stride, 0);
    if (m_frameCount++ >= MaximumBlankFrames)
    {
        SignalDone();
        return;
    }
    // A frame that cannot be shown or kept counts like one on which there is nothing to see.
    if (isShown && !image->IsBlank(-1) && Keep(*image))
        SignalDone();
}

// The pixels of a frame are gone when the call ends, so the picture gets its own.
bool CZVThumbGrabber::Keep(const IZVImage& image)
{
    const ZVCriticalSectionLock lock(m_imageLock);
    ZVImagePointer copy = ZVImages::Create();
    if (copy == nullptr || !copy->CopyFrom(image))
        return false;
    m_image = std::move(copy);
    return true;
}
