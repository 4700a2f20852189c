#include "video/blackbars/ZVCropFilter.h"

#include "system/log/ZVLog.h"
#include "video/film/ZVShortage.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>

namespace
{
constexpr ZVLogSource BuildSource {ZVLogCategory::Network, L"CZVVideoAnalyzeExtended::ProcessBlackBarFilter(init)"};

// The names under which the text of the chain knows its ends.
constexpr char SourceName[] = "in";
constexpr char SinkName[] = "out";

// Up to this brightness, of 256, a pixel is black. Video of limited range has its black at 16.
constexpr int32_t FullRangeBlack = 4;
constexpr int32_t LimitedRangeBlack = 20;

// The formats that have the full range without saying so.
constexpr int FullRangeFormats[] = {AV_PIX_FMT_YUVJ420P, AV_PIX_FMT_YUVJ422P, AV_PIX_FMT_YUVJ444P};

// Pixels of more bits are numbers with a fraction, which are converted for the crop detection into such of 16 bits.
constexpr int MaximumDepth = 16;

bool HasFullRange(const AVFrame& frame)
{
    return frame.color_range == AVCOL_RANGE_JPEG ||
           std::ranges::find(FullRangeFormats, frame.format) != std::end(FullRangeFormats);
}
}

// clang-format off
constexpr ZVCropFilter::BuildStep ZVCropFilter::BuildSteps[] = {
    {&ZVCropFilter::CreateSource, "Creating the input buffer filter failed (%d)"},
    {&ZVCropFilter::CreateSink,   "Creating the buffer sink filter failed (%d)"},
    {&ZVCropFilter::Parse,        "Parsing the graph failed (%d)"},
    {&ZVCropFilter::Configure,    "Configuring the graph failed(%d)"},
};
// clang-format on

void ZVCropFilter::Process(const AVFrame& frame, ZVRectTrackers& trackers)
{
    // The filters read a frame as if it had the size and the format of the first.
    if (!Fits(frame))
        Restart();
    if (m_hasFailed || (m_graph == nullptr && !Build(frame)))
        return;
    int result = Feed(frame);
    while (result >= 0)
    {
        result = m_codec.av_buffersink_get_frame(m_sink, m_output.get());
        if (result < 0)
            break;
        Count(*m_output, trackers);
        m_codec.av_frame_unref(m_output.get());
    }
    m_hasNoMemory = m_hasNoMemory || result == AVERROR(ENOMEM);
}

// The source takes a reference of its own. What a file says of its frames under the names of the crop detection does not go in,
// since the crop detection says nothing of the first ones.
int ZVCropFilter::Feed(const AVFrame& frame)
{
    if (frame.metadata == nullptr)
        return m_codec.av_buffersrc_write_frame(m_source, &frame);
    int result = m_codec.av_frame_ref(m_input.get(), &frame);
    if (result >= 0)
    {
        m_codec.av_dict_free(&m_input->metadata);
        result = m_codec.av_buffersrc_write_frame(m_source, m_input.get());
    }
    m_codec.av_frame_unref(m_input.get());
    return result;
}

bool ZVCropFilter::Fits(const AVFrame& frame) const
{
    return frame.width == m_width && frame.height == m_height && frame.format == m_format;
}

bool ZVCropFilter::Build(const AVFrame& frame)
{
    for (const BuildStep& step : BuildSteps)
    {
        const int result = (this->*step.Run)(frame);
        if (result >= 0)
            continue;
        BuildSource.Log(step.Failure, result);
        m_graph.reset();
        m_hasFailed = true;
        m_hasNoMemory = IsShortage(result);
        return false;
    }
    m_width = frame.width;
    m_height = frame.height;
    m_format = frame.format;
    return true;
}

int ZVCropFilter::CreateSource(const AVFrame& frame)
{
    m_graph = ZVFilterGraphPointer(m_codec.avfilter_graph_alloc(), {m_codec.avfilter_graph_free});
    m_input = ZVFramePointer(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    m_output = ZVFramePointer(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    if (m_graph == nullptr || m_input == nullptr || m_output == nullptr)
        return AVERROR(ENOMEM);
    // Frames of a format that the crop detection does not take are converted for it and back again. No size changes, so the
    // cheapest conversion gives the same brightness, and nobody looks at what comes back.
    m_graph->scale_sws_opts = m_codec.av_strdup("flags=neighbor:sws_dither=none");
    if (m_graph->scale_sws_opts == nullptr)
        return AVERROR(ENOMEM);
    const AVFilter* const filter = m_codec.avfilter_get_by_name("buffer");
    const char* const format = m_codec.av_get_pix_fmt_name(static_cast<AVPixelFormat>(frame.format));
    if (filter == nullptr || format == nullptr)
        return AVERROR_FILTER_NOT_FOUND;
    char arguments[256];
    snprintf(arguments, sizeof arguments, "video_size=%dx%d:pix_fmt=%s:time_base=%d/%d:pixel_aspect=%d/%d", frame.width,
             frame.height, format, frame.time_base.num, frame.time_base.den, frame.sample_aspect_ratio.num,
             frame.sample_aspect_ratio.den);
    return m_codec.avfilter_graph_create_filter(&m_source, filter, SourceName, arguments, nullptr, m_graph.get());
}

// The sink asks for the format that the frames came in.
int ZVCropFilter::CreateSink(const AVFrame& frame)
{
    const AVFilter* const filter = m_codec.avfilter_get_by_name("buffersink");
    if (filter == nullptr)
        return AVERROR_FILTER_NOT_FOUND;
    const int result = m_codec.avfilter_graph_create_filter(&m_sink, filter, SinkName, nullptr, nullptr, m_graph.get());
    if (result < 0)
        return result;
    const int formats[] = {frame.format, AV_PIX_FMT_NONE};
    const unsigned length =
        m_codec.av_int_list_length_for_size(sizeof formats[0], formats, static_cast<uint64_t>(AV_PIX_FMT_NONE));
    if (length > INT_MAX / sizeof formats[0])
        return 0;
    return m_codec.av_opt_set_bin(m_sink, "pix_fmts", reinterpret_cast<const uint8_t*>(formats),
                                  static_cast<int>(length * sizeof formats[0]), AV_OPT_SEARCH_CHILDREN);
}

// Ties the source and the sink to the open ends of the crop detection.
int ZVCropFilter::Parse(const AVFrame& frame)
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
    // Nothing is reported of the first 16 frames. Each report holds the picture of all frames since the last of its resets, which
    // are 32 frames apart.
    char text[64];
    snprintf(text, sizeof text, "cropdetect=limit=%d:round=4:skip=16:reset=32", GetLimit(frame));
    // The call takes both lists and gives back what is left of them.
    AVFilterInOut* openInputs = inputs.release();
    AVFilterInOut* openOutputs = outputs.release();
    const int result = m_codec.avfilter_graph_parse_ptr(m_graph.get(), text, &openInputs, &openOutputs, nullptr);
    inputs.reset(openInputs);
    outputs.reset(openOutputs);
    return result;
}

int ZVCropFilter::Configure(const AVFrame&)
{
    return m_codec.avfilter_graph_config(m_graph.get(), nullptr);
}

int32_t ZVCropFilter::GetLimit(const AVFrame& frame) const
{
    const AVPixFmtDescriptor* const format = m_codec.av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    const int depth = format == nullptr ? 0 : std::min(format->comp[0].depth, MaximumDepth);
    return (1 << depth) / 256 * (HasFullRange(frame) ? FullRangeBlack : LimitedRangeBlack);
}

// Counts the rectangle that a frame came out with. In a frame that is black as a whole it has no size.
void ZVCropFilter::Count(const AVFrame& output, ZVRectTrackers& trackers) const
{
    const auto find = [&](const char* key) -> std::optional<int32_t>
    {
        const AVDictionaryEntry* const entry =
            output.metadata == nullptr ? nullptr : m_codec.av_dict_get(output.metadata, key, nullptr, 0);
        if (entry == nullptr)
            return {};
        return static_cast<int32_t>(std::strtol(entry->value, nullptr, 10));
    };
    const int32_t x = find("lavfi.cropdetect.x").value_or(0);
    const int32_t y = find("lavfi.cropdetect.y").value_or(0);
    const int32_t width = find("lavfi.cropdetect.w").value_or(0);
    const int32_t height = find("lavfi.cropdetect.h").value_or(0);
    // Sides outside the frame are none.
    const bool isInside = x >= 0 && y >= 0 && width <= m_width - x && height <= m_height - y;
    if (isInside && width > 0 && height > 0)
        trackers.Add({x, y, x + width, y + height}, output.pts);
}
