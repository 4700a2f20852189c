#include "video/film/ZVFilterChain.h"

#include <climits>
#include <cstdio>

namespace
{
// The names under which the text of the chain knows its ends.
constexpr char SourceName[] = "in";
constexpr char SinkName[] = "out";
}

// clang-format off
constexpr ZVFilterChain::BuildStep ZVFilterChain::BuildSteps[] = {
    {Step::Source,    &ZVFilterChain::CreateSource},
    {Step::Sink,      &ZVFilterChain::CreateSink},
    {Step::Parse,     &ZVFilterChain::Parse},
    {Step::Configure, &ZVFilterChain::Configure},
};
// clang-format on

ZVFilterChain::Outcome ZVFilterChain::Build(const AVFrame& frame, const Design& design)
{
    for (const BuildStep& step : BuildSteps)
    {
        const int result = (this->*step.Run)(frame, design);
        if (result >= 0)
            continue;
        m_graph.reset();
        return {step.Name, result};
    }
    m_width = frame.width;
    m_height = frame.height;
    m_format = frame.format;
    return {};
}

bool ZVFilterChain::Fits(const AVFrame& frame) const
{
    return frame.width == m_width && frame.height == m_height && frame.format == m_format;
}

int ZVFilterChain::CreateSource(const AVFrame& frame, const Design& design)
{
    m_graph = ZVFilterGraphPointer(m_codec.avfilter_graph_alloc(), {m_codec.avfilter_graph_free});
    if (m_graph == nullptr)
        return AVERROR(ENOMEM);
    m_graph->scale_sws_opts = m_codec.av_strdup(design.ConversionOptions);
    if (m_graph->scale_sws_opts == nullptr)
        return AVERROR(ENOMEM);
    const AVFilter* const filter = m_codec.avfilter_get_by_name("buffer");
    const char* const format = m_codec.av_get_pix_fmt_name(static_cast<AVPixelFormat>(frame.format));
    if (filter == nullptr || format == nullptr)
        return AVERROR_FILTER_NOT_FOUND;
    char arguments[256];
    snprintf(arguments, sizeof arguments, "video_size=%dx%d:pix_fmt=%s:time_base=%d/%d:pixel_aspect=%d/%d:colorspace=%d:range=%d",
             frame.width, frame.height, format, frame.time_base.num, frame.time_base.den, frame.sample_aspect_ratio.num,
             frame.sample_aspect_ratio.den, frame.colorspace, frame.color_range);
    return m_codec.avfilter_graph_create_filter(&m_source, filter, SourceName, arguments, nullptr, m_graph.get());
}

int ZVFilterChain::CreateSink(const AVFrame&, const Design& design)
{
    const AVFilter* const filter = m_codec.avfilter_get_by_name("buffersink");
    if (filter == nullptr)
        return AVERROR_FILTER_NOT_FOUND;
    const int result = m_codec.avfilter_graph_create_filter(&m_sink, filter, SinkName, nullptr, nullptr, m_graph.get());
    if (result < 0)
        return result;
    const int formats[] = {design.Format, AV_PIX_FMT_NONE};
    const unsigned length =
        m_codec.av_int_list_length_for_size(sizeof formats[0], formats, static_cast<uint64_t>(AV_PIX_FMT_NONE));
    if (length > INT_MAX / sizeof formats[0])
        return 0;
    return m_codec.av_opt_set_bin(m_sink, "pix_fmts", reinterpret_cast<const uint8_t*>(formats),
                                  static_cast<int>(length * sizeof formats[0]), AV_OPT_SEARCH_CHILDREN);
}

// Ties the source and the sink to the open ends of the text.
int ZVFilterChain::Parse(const AVFrame&, const Design& design)
{
    const auto makePad = [this](const char* name, AVFilterContext* filter)
    {
        ZVFilterPadsPointer pad(m_codec.avfilter_inout_alloc(), {m_codec.avfilter_inout_free});
        if (pad != nullptr)
        {
            pad->name = m_codec.av_strdup(name);
            pad->filter_ctx = filter;
            pad->pad_idx = 0;
            pad->next = nullptr;
        }
        return pad;
    };
    ZVFilterPadsPointer outputs = makePad(SourceName, m_source);
    ZVFilterPadsPointer inputs = makePad(SinkName, m_sink);
    if (outputs == nullptr || inputs == nullptr || outputs->name == nullptr || inputs->name == nullptr)
        return AVERROR(ENOMEM);
    // The call takes both lists and gives back what is left of them.
    AVFilterInOut* openInputs = inputs.release();
    AVFilterInOut* openOutputs = outputs.release();
    const int result = m_codec.avfilter_graph_parse_ptr(m_graph.get(), design.Text, &openInputs, &openOutputs, nullptr);
    inputs.reset(openInputs);
    outputs.reset(openOutputs);
    return result;
}

int ZVFilterChain::Configure(const AVFrame&, const Design&)
{
    return m_codec.avfilter_graph_config(m_graph.get(), nullptr);
}
