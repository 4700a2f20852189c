#pragma once

#include "contracts/IZVVideoPlayer.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

// Notes what a player tells, and waits for it.
class PlayerOutput final : public IZVVideoPlayerVideoOutput
{
public:
    // A frame with pixels of its own.
    struct Frame
    {
        int64_t Milliseconds = 0;
        int32_t Width = 0;
        int32_t Height = 0;
        std::vector<uint8_t> Pixels;

        // B, G and R of a pixel, its place given in parts of the width and the height.
        std::vector<int> At(double x, double y) const
        {
            const auto column = static_cast<size_t>(x * Width);
            const auto row = static_cast<size_t>(y * Height);
            const uint8_t* const pixel = &Pixels[(row * static_cast<size_t>(Width) + column) * 4];
            return {pixel[0], pixel[1], pixel[2]};
        }
    };

    // Of what comes after that many frames nothing is kept.
    explicit PlayerOutput(size_t maximumFrames = 1) : m_maximumFrames(maximumFrames) {}

    // Waits for as many frames or the end; false after half a minute without.
    bool Wait()
    {
        std::unique_lock lock(m_mutex);
        return m_condition.wait_for(lock, std::chrono::seconds(30), [this] { return m_isDone; });
    }

    void OnEndOfStream() override { Note("end"); }
    void OnPlay() override { Note("play"); }
    void OnStop() override { Note("stop"); }
    void OnSeekDone() override { Note("place"); }
    void OnFormatChange() override { Note("format"); }
    void OnError() override { Note("error"); }
    void OnVideoFrame(const ZVVideoFrame& frame) override
    {
        DuringFrame();
        if (Frames.size() < m_maximumFrames)
        {
            Frame copy {frame.Milliseconds, frame.Width, frame.Height, {}};
            for (int32_t y = 0; y < frame.Height; ++y)
            {
                const uint8_t* const row = frame.Pixels + static_cast<ptrdiff_t>(y) * frame.Stride;
                copy.Pixels.insert(copy.Pixels.end(), row, row + static_cast<ptrdiff_t>(frame.Width) * 4);
            }
            Frames.push_back(std::move(copy));
        }
        Note("frame");
    }
    bool IsFormatSupported(int32_t format) override { return format == SupportedFormat; }
    uint64_t GetWindow() override { return 0; }

    int32_t SupportedFormat = FormatRGB32;
    std::function<void()> DuringFrame = [] {};
    // To be looked at after Wait, while nothing is delivered.
    std::vector<Frame> Frames;
    std::vector<std::string> Calls;

private:
    void Note(const std::string& call)
    {
        const std::lock_guard lock(m_mutex);
        Calls.push_back(call);
        m_isDone = m_isDone || call == "end" || (call == "frame" && Frames.size() >= m_maximumFrames);
        m_condition.notify_all();
    }

    const size_t m_maximumFrames;
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_isDone = false;
};
