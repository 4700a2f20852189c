#pragma once

#include "video/blackbars/ZVRectTrackers.h"
#include "video/film/ZVFilterChain.h"

#include <cstdint>

// The crop detection of the codec libraries: a chain of filters that takes frames and says of each, but for the first ones, which
// rectangle held the picture in it and the frames before it.
class ZVCropFilter
{
public:
    // The libraries must be loaded and outlive the filter.
    explicit ZVCropFilter(const CZVAVLibraries& codec) : m_codec(codec), m_chain(codec) {}
    ZVCropFilter(const ZVCropFilter&) = delete;
    ZVCropFilter& operator=(const ZVCropFilter&) = delete;

    // Takes the next frame and counts what is known then. Where the chain cannot be made for a frame, the log says why, and
    // nothing more is counted for this film.
    void Process(const AVFrame& frame, ZVRectTrackers& trackers);

    // Begins anew with the next frame: what was seen elsewhere in the film does not count there.
    void Restart() { m_chain.Reset(); }

    // True once there was no memory for the chain or in it, which says nothing about the film.
    bool HasNoMemory() const { return m_hasNoMemory; }

private:
    bool Build(const AVFrame& frame);
    bool MakeFrames();
    int Feed(const AVFrame& frame);
    int32_t GetLimit(const AVFrame& frame) const;
    void Count(const AVFrame& output, ZVRectTrackers& trackers) const;

    const CZVAVLibraries& m_codec;
    ZVFilterChain m_chain;
    ZVFramePointer m_input;
    ZVFramePointer m_output;
    bool m_hasFailed = false;
    bool m_hasNoMemory = false;
};
