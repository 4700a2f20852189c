#pragma once

#include "contracts/IZVVideoPlayer.h"

#include <atomic>

// Where the frames of a delivery come from. One thread at a time fetches frames; Cancel may be called from any.
class IFrameSource
{
public:
    IFrameSource() = default;
    IFrameSource(const IFrameSource&) = delete;
    IFrameSource& operator=(const IFrameSource&) = delete;
    virtual ~IFrameSource() = default;

    enum class Outcome
    {
        Frame,
        End,
        Failure,  // the film cannot be read or decoded, or there is no memory; the log has the reason
    };

    // Fetches the next frame, which is valid until the next call. May take as long as a decoder takes.
    virtual Outcome Next(ZVVideoFrame& frame) = 0;

    // Has Next end as soon as it can.
    void Cancel() { m_isCancelled = true; }

protected:
    std::atomic<bool> m_isCancelled = false;
};
