#include "video/blackbars/ZVCropFilter.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "video/RealCodec.h"
#include "video/film/ZVCodecLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace
{
using testing::ElementsAre;

class ZVCropFilterTest : public RealCodec
{
protected:
    void SetUp() override
    {
        RealCodec::SetUp();
        g_pZVTools = &m_tools;
        m_codec.av_log_set_callback(ZVCodecLog::Write);
    }
    void TearDown() override { g_pZVTools = nullptr; }

    // A picture on bars of another brightness: gray, or 4:4:4 of more bits with all planes alike.
    ZVFramePointer Make(AVPixelFormat format, int width, int height, const ZVRect& picture, int bars, int brightness = 200)
    {
        ZVFramePointer frame(m_codec.av_frame_alloc(), {m_codec.av_frame_free});
        const int pixelSize = format == AV_PIX_FMT_GRAY8 || format == AV_PIX_FMT_YUVJ444P ? 1 : 2;
        frame->format = format;
        frame->width = width;
        frame->height = height;
        frame->buf[0] = m_codec.av_buffer_alloc(static_cast<size_t>(width * height * pixelSize));
        for (int plane = 0; plane < (format == AV_PIX_FMT_GRAY8 ? 1 : 3); ++plane)
        {
            frame->linesize[plane] = width * pixelSize;
            frame->data[plane] = frame->buf[0]->data;
        }
        frame->time_base = {1, 25};
        frame->pts = m_pts++;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
            {
                const bool isInside = x >= picture.Left && x < picture.Right && y >= picture.Top && y < picture.Bottom;
                const auto pixel = static_cast<uint16_t>(isInside ? brightness : bars);
                std::memcpy(frame->data[0] + (y * width + x) * pixelSize, &pixel, static_cast<size_t>(pixelSize));
            }
        return frame;
    }

    void Feed(const AVFrame& frame, int times)
    {
        for (; times > 0; --times)
            m_filter.Process(frame, m_trackers);
    }

    std::vector<std::pair<std::string, int32_t>> GetHits() const
    {
        std::vector<std::pair<std::string, int32_t>> hits;
        for (const sRectTracker& tracker : m_trackers.GetSeenOften())
            hits.emplace_back(std::unique_ptr<char[]>(tracker.Rect.GetText(L"x").GetUTF8()).get(), tracker.Hits);
        return hits;
    }

    static constexpr ZVRect Wide {0, 20, 160, 100};

    FakeTools m_tools;
    int64_t m_pts = 0;
    ZVCropFilter m_filter {m_codec};
    ZVRectTrackers m_trackers;
};

// What a frame shows beyond its neighbors stays in the reports until the next 32.
TEST_F(ZVCropFilterTest, ReportsThePictureOfAllFramesSinceTheLastReset)
{
    const ZVFramePointer frame = Make(AV_PIX_FMT_GRAY8, 160, 120, Wide, 0);
    Feed(*frame, 16 + 30);
    Feed(*Make(AV_PIX_FMT_GRAY8, 160, 120, {40, 0, 60, 120}, 0), 1);
    Feed(*frame, 16 * 32);
    EXPECT_THAT(GetHits(), ElementsAre(std::pair("0x20x160x100", 30 + 16 * 32 - 1)));
}

TEST_F(ZVCropFilterTest, TakesForBlackWhatTheRangeAndTheDepthCallBlack)
{
    struct Row
    {
        AVPixelFormat Format;
        AVColorRange Range;
        int Bars;
        bool IsBlack;
    };
    constexpr Row rows[] = {
        {AV_PIX_FMT_GRAY8,       AVCOL_RANGE_MPEG,        20, true },
        {AV_PIX_FMT_GRAY8,       AVCOL_RANGE_UNSPECIFIED, 21, false},
        {AV_PIX_FMT_GRAY8,       AVCOL_RANGE_JPEG,        4,  true },
        {AV_PIX_FMT_GRAY8,       AVCOL_RANGE_JPEG,        5,  false},
        {AV_PIX_FMT_YUVJ444P,    AVCOL_RANGE_UNSPECIFIED, 4,  true },
        {AV_PIX_FMT_YUVJ444P,    AVCOL_RANGE_UNSPECIFIED, 5,  false},
        {AV_PIX_FMT_YUV444P10LE, AVCOL_RANGE_MPEG,        80, true },
        {AV_PIX_FMT_YUV444P10LE, AVCOL_RANGE_MPEG,        81, false},
        {AV_PIX_FMT_YUV444P12LE, AVCOL_RANGE_JPEG,        64, true },
        {AV_PIX_FMT_YUV444P12LE, AVCOL_RANGE_JPEG,        65, false},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(testing::Message() << "format " << row.Format << ", bars of " << row.Bars);
        ZVRectTrackers trackers;
        const ZVFramePointer frame = Make(row.Format, 160, 120, Wide, row.Bars, row.Bars + 40);
        frame->color_range = row.Range;
        for (int count = 0; count < 20; ++count)
            m_filter.Process(*frame, trackers);
        m_filter.Restart();
        ASSERT_EQ(trackers.GetSeenOften().GetCount(), 1);
        EXPECT_EQ(trackers.GetSeenOften()[0].Rect, row.IsBlack ? Wide : ZVRect({0, 0, 160, 120}));
    }
}
}
