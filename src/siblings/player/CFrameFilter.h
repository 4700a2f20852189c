#pragma once

#include "siblings/player/CFrameFilterText.h"
#include "video/film/ZVFilterChain.h"

// Makes decoded frames into pictures for the screen: B, G, R and an unused byte a pixel.
//
// Where the full chain of filters cannot be made for a frame or does not take it, a plain conversion takes its place, and the log says so.
class CFrameFilter
{
public:
    // The libraries must be loaded and outlive the filter.
    explicit CFrameFilter(const CZVAVLibraries& codec) : m_codec(codec), m_chain(codec) {}
    CFrameFilter(const CFrameFilter&) = delete;
    CFrameFilter& operator=(const CFrameFilter&) = delete;

    // How the container wants its frames shown, beside what they say themselves.
    struct Presentation
    {
        double PixelAspect = 1;  // width to height of a pixel
        bool IsMirrored = false;
    };

    // Puts a frame in. False, with the reason in the log, when there is no chain for it.
    bool Write(const AVFrame& frame, const Presentation& presentation);
    // Says that no more frames come.
    void End();
    // The next picture, or null when another frame must go in. Valid until the next call.
    const AVFrame* Read();
    // True once a frame that was put in cannot be made into a picture; the log has the reason.
    bool HasFailed() const { return m_hasFailed; }
    // What the times of the pictures count.
    AVRational GetTimeBase() const { return m_chain.GetTimeBase(); }
    // Begins anew with the next frame: frames of different places have nothing to do with each other.
    void Restart();

private:
    CFrameLook GetLook(const AVFrame& frame, const Presentation& presentation) const;
    int32_t GetPeakNits(const AVFrame& frame) const;
    bool Build(const CFrameLook& look);
    bool BuildFrom(const std::string& text);
    bool MakeFrames();
    int ReadOutput();

    const CZVAVLibraries& m_codec;
    ZVFilterChain m_chain;
    CFrameLook m_look;       // what the chain was made for
    ZVFramePointer m_input;  // the frame that was put in last
    ZVFramePointer m_output;
    bool m_isPlain = false;  // the full chain does not take these frames
    bool m_hasFailed = false;
};
