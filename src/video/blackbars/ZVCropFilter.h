#pragma once

#include "video/blackbars/ZVRectTrackers.h"
#include "video/film/ZVCodecObjects.h"

#include <cstdint>

using ZVFilterGraphPointer = ZVCodecPointer<AVFilterGraph>;
using ZVFilterPadsPointer = ZVCodecPointer<AVFilterInOut>;

// The crop detection of the codec libraries: a chain of filters that takes frames and says of each, but for the first ones, which
// rectangle held the picture in it and the frames before it.
class ZVCropFilter
{
public:
    // The libraries must be loaded and outlive the filter.
    explicit ZVCropFilter(const CZVAVLibraries& codec) : m_codec(codec) {}
    ZVCropFilter(const ZVCropFilter&) = delete;
    ZVCropFilter& operator=(const ZVCropFilter&) = delete;

    // Takes the next frame and counts what is known then. Where the chain cannot be made for a frame, the log says why, and
    // nothing more is counted for this film.
    void Process(const AVFrame& frame, ZVRectTrackers& trackers);

    // Begins anew with the next frame: what was seen elsewhere in the film does not count there.
    void Restart() { m_graph.reset(); }

    // True once there was no memory for the chain or in it, which says nothing about the film.
    bool HasNoMemory() const { return m_hasNoMemory; }

private:
    int CreateSource(const AVFrame& frame);
    int CreateSink(const AVFrame& frame);
    int Parse(const AVFrame& frame);
    int Configure(const AVFrame& frame);
    bool Build(const AVFrame& frame);
    bool Fits(const AVFrame& frame) const;
    int Feed(const AVFrame& frame);
    int32_t GetLimit(const AVFrame& frame) const;
    void Count(const AVFrame& output, ZVRectTrackers& trackers) const;

    // One step of building the chain, with the text for the log when it fails.
    struct BuildStep
    {
        int (ZVCropFilter::*Run)(const AVFrame& frame);
        const char* Failure;
    };
    static const BuildStep BuildSteps[];

    const CZVAVLibraries& m_codec;
    ZVFilterGraphPointer m_graph;
    AVFilterContext* m_source = nullptr;  // of the graph, like the sink
    AVFilterContext* m_sink = nullptr;
    ZVFramePointer m_input;
    ZVFramePointer m_output;
    // What the graph was made for.
    int m_width = 0;
    int m_height = 0;
    int m_format = AV_PIX_FMT_NONE;
    bool m_hasFailed = false;
    bool m_hasNoMemory = false;
};
