#include "video/blackbars/ZVCropFilter.h"

#include "system/log/ZVLog.h"
#include "video/film/ZVShortage.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>

namespace
{
constexpr ZVLogSource BuildSource {ZVLogCategory::Network, L"CZVVideoAnalyzeExtended::ProcessBlackBarFilter(init)"};

// What the log says of a chain that cannot be made, by the step at which its building ended.
constexpr const char* Failures[] = {
    "Creating the input buffer filter failed (%d)",
    "Creating the buffer sink filter failed (%d)",
    "Parsing the graph failed (%d)",
    "Configuring the graph failed(%d)",
};
static_assert(std::size(Failures) == static_cast<size_t>(ZVFilterChain::Step::Built));

// Frames of a format that the crop detection does not take are converted for it and back again. No size changes, so the cheapest
// conversion gives the same brightness, and nobody looks at what comes back.
constexpr char ConversionOptions[] = "flags=neighbor:sws_dither=none";

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

void ZVCropFilter::Process(const AVFrame& frame, ZVRectTrackers& trackers)
{
    // The filters read a frame as if it had the size and the format of the first.
    if (!m_chain.Fits(frame))
        Restart();
    if (m_hasFailed || (!m_chain.IsBuilt() && !Build(frame)))
        return;
    int result = Feed(frame);
    while (result >= 0)
    {
        result = m_chain.Read(*m_output);
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
        return m_chain.Write(&frame);
    int result = m_codec.av_frame_ref(m_input.get(), &frame);
    if (result >= 0)
    {
        m_codec.av_dict_free(&m_input->metadata);
        result = m_chain.Write(m_input.get());
    }
    m_codec.av_frame_unref(m_input.get());
    return result;
}

bool ZVCropFilter::MakeFrames()
{
    for (ZVFramePointer* const frame : {&m_input, &m_output})
        if (*frame == nullptr)
            *frame = ZVFramePointer(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
    return m_input != nullptr && m_output != nullptr;
}

bool ZVCropFilter::Build(const AVFrame& frame)
{
    // Nothing is reported of the first 16 frames. Each report holds the picture of all frames since the last of its resets, which
    // are 32 frames apart.
    char text[64];
    snprintf(text, sizeof text, "cropdetect=limit=%d:round=4:skip=16:reset=32", GetLimit(frame));
    ZVFilterChain::Outcome outcome = {ZVFilterChain::Step::Source, AVERROR(ENOMEM)};
    if (MakeFrames())
        outcome = m_chain.Build(frame, {text, ConversionOptions, frame.format});
    if (outcome.End == ZVFilterChain::Step::Built)
        return true;
    BuildSource.Log(Failures[static_cast<size_t>(outcome.End)], outcome.Result);
    m_hasFailed = true;
    m_hasNoMemory = IsShortage(outcome.Result);
    return false;
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
    const bool isInside = x >= 0 && y >= 0 && width <= output.width - x && height <= output.height - y;
    if (isInside && width > 0 && height > 0)
        trackers.Add({x, y, x + width, y + height}, output.pts);
}
