#include "video/blackbars/ZVBlackBarReport.h"

#include "video/RealCodec.h"
#include "video/blackbars/ZVRectTrackers.h"

#include <gtest/gtest.h>

namespace
{
using ZVBlackBarReportTest = RealCodec;

constexpr ZVFilmClock Clock {
    {1, 1000},
    2000
};

ZVString Report(const ZVRectTrackers& trackers, double pixelAspect, const CZVAVLibraries& codec)
{
    const ZVBlackBarVerdict verdict(trackers.GetSeenOften(), pixelAspect);
    return ZVBlackBarReport::Write(verdict, verdict.GetAspect(verdict.GetResult()), codec, Clock);
}

void Count(ZVRectTrackers& trackers, const ZVRect& rect, int32_t hits, int64_t pts)
{
    for (; hits > 0; --hits)
        trackers.Add(rect, pts++);
}

// What was seen once or twice does not even count in the total.
TEST_F(ZVBlackBarReportTest, LeavesOutTheRareOfAHighScore)
{
    ZVRectTrackers trackers;
    trackers.Add({0, 132, 1920, 948}, AV_NOPTS_VALUE);
    Count(trackers, {0, 132, 1920, 948}, 990, 47'000);
    for (int32_t hits = 0; hits < 5; ++hits)
        trackers.Add({0, 0, 1920, 1080}, AV_NOPTS_VALUE);
    Count(trackers, {240, 0, 1680, 1080}, 4, 0);
    Count(trackers, {500, 500, 600, 600}, 2, 0);
    EXPECT_EQ(Report(trackers, 1, m_codec), L"Score: 5\n"
                                            L"Result: 0x132x1920x948 (2.35)\n"
                                            L"\n"
                                            L"0x132x1920x948 (2.35), 99% (991 samples), first at 00:00:45\n"
                                            L"0x0x1920x1080 (1.78), 1% (5 samples), first at <unknown>\n"
                                            L"\n"
                                            L"Hits <1% have been skipped due to a high accuracy score.");
}
}
