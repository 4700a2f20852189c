#pragma once

#include "contracts/IZVVideoPlayer.h"
#include "system/library/ZVImages.h"
#include "system/thread/ZVCriticalSection.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

// Takes one picture of a film: the first frame, from a time on, that is not blank. Made for a player with an open film, whose output
// it is from then on; the player lives longer.
//
// Two threads meet here: the caller, who waits, and the player's own, which brings the frames. The two locks are never held
// together.
class CZVThumbGrabber final : public IZVVideoPlayerVideoOutput
{
public:
    // How long one attempt waits for a frame.
    static constexpr int32_t LongestWaitMs = 30'000;

    explicit CZVThumbGrabber(IZVVideoPlayer& player, int32_t waitMs = LongestWaitMs);
    CZVThumbGrabber(const CZVThumbGrabber&) = delete;
    CZVThumbGrabber& operator=(const CZVThumbGrabber&) = delete;

    // Gives the caller the picture at a time in milliseconds, or a minute later when there is none. False without a picture; the
    // log then says how far each of the two attempts came. After the call no more frames are delivered.
    bool Grab(int32_t timeMs, ZVImagePointer& image);

    // A film that ends early brings no more frames.
    void OnEndOfStream() override { SignalDone(); }
    void OnPlay() override {}
    void OnStop() override {}
    void OnSeekDone() override {}
    void OnFormatChange() override {}
    void OnError() override {}
    void OnVideoFrame(const ZVVideoFrame& frame) override;
    bool IsFormatSupported(int32_t format) override { return format == FormatRGB32; }
    uint64_t GetWindow() override { return 0; }

private:
    void TryAt(int64_t milliseconds);
    void WaitUntilDone();
    void SignalDone();
    bool HasImage();
    bool Keep(const IZVImage& image);

    IZVVideoPlayer& m_player;
    // Guards the end of an attempt.
    std::mutex m_doneMutex;
    std::condition_variable m_doneCondition;
    std::atomic<bool> m_done = false;
    // Set by nobody in the worker, whose tasks cannot be cancelled.
    bool m_aborted = false;
    // The frames of this attempt. Counted by the player's thread, and read between the attempts.
    int32_t m_frameCount = 0;
    // Guards the picture.
    ZVCriticalSection m_imageLock;
    ZVImagePointer m_image;
    const int32_t m_waitMs;
};
