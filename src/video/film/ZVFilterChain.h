#pragma once

#include "video/film/ZVCodecObjects.h"

using ZVFilterGraphPointer = ZVCodecPointer<AVFilterGraph>;
using ZVFilterPadsPointer = ZVCodecPointer<AVFilterInOut>;

// A chain of filters of the codec libraries, made for frames of one size and format: frames go in at one end and come out at the
// other.
class ZVFilterChain
{
public:
    // Where the building of a chain ended.
    enum class Step
    {
        Source,
        Sink,
        Parse,
        Configure,
        Built,
    };

    struct Outcome
    {
        Step End = Step::Built;
        int Result = 0;  // of the codec libraries
    };

    // What the chain does. The format is that of the frames that come out; the options are those of conversions that the libraries
    // put in by themselves.
    struct Design
    {
        const char* Text = "";
        const char* ConversionOptions = "";
        int Format = AV_PIX_FMT_NONE;
    };

    // The libraries must be loaded and outlive the chain.
    explicit ZVFilterChain(const CZVAVLibraries& codec) : m_codec(codec) {}
    ZVFilterChain(const ZVFilterChain&) = delete;
    ZVFilterChain& operator=(const ZVFilterChain&) = delete;

    // Builds the chain for frames like this one. Without success there is no chain.
    Outcome Build(const AVFrame& frame, const Design& design);
    bool IsBuilt() const { return m_graph != nullptr; }
    // Whether a frame has the size and the format that the chain was built for. Filters read every frame as if it had.
    bool Fits(const AVFrame& frame) const;
    // Frees the chain and the frames in it.
    void Reset() { m_graph.reset(); }

    // What the times of the frames count that come out.
    AVRational GetTimeBase() const { return m_sink->inputs[0]->time_base; }

    // Puts a frame in; the chain takes a reference of its own. Null says that no more come. Returns a result of the libraries.
    int Write(const AVFrame* frame) { return m_codec.av_buffersrc_write_frame(m_source, frame); }
    // Fetches the next frame that comes out. Returns a result of the libraries, AVERROR(EAGAIN) when another frame must go in.
    int Read(AVFrame& frame) { return m_codec.av_buffersink_get_frame(m_sink, &frame); }

private:
    int CreateSource(const AVFrame& frame, const Design& design);
    int CreateSink(const AVFrame& frame, const Design& design);
    int Parse(const AVFrame& frame, const Design& design);
    int Configure(const AVFrame& frame, const Design& design);

    struct BuildStep
    {
        Step Name;
        int (ZVFilterChain::*Run)(const AVFrame& frame, const Design& design);
    };
    static const BuildStep BuildSteps[];

    const CZVAVLibraries& m_codec;
    ZVFilterGraphPointer m_graph;
    AVFilterContext* m_source = nullptr;  // of the graph, like the sink
    AVFilterContext* m_sink = nullptr;
    // What the graph was made for.
    int m_width = 0;
    int m_height = 0;
    int m_format = AV_PIX_FMT_NONE;
};
