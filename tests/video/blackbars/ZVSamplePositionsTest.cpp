#include "video/blackbars/ZVSamplePositions.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
using Seconds = std::vector<int32_t>;

constexpr int64_t Second = 1'000'000;

Seconds GetSeconds(int64_t duration)
{
    const ZVSamplePositions positions(duration);
    Seconds seconds;
    for (int32_t index = 0; index < positions.GetCount(); ++index)
        seconds.push_back(positions.Get(index));
    return seconds;
}

TEST(ZVSamplePositions, LieAnEighthApartAfterTheFirstTwo)
{
    EXPECT_EQ(GetSeconds(INT64_MIN), Seconds({0, 45}));
    EXPECT_EQ(GetSeconds(1), Seconds({0, 45, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(GetSeconds(87'999'999), Seconds({0, 45, 10, 20, 30, 40, 50, 60, 70})) << "fractions are cut twice";
    EXPECT_EQ(GetSeconds((80 + (int64_t {1} << 32)) * Second), Seconds({0, 45, 10, 20, 30, 40, 50, 60, 70}));
}

TEST(ZVSamplePositions, LieBeforeTheEndUnlessThatComesInTheFirst45Seconds)
{
    EXPECT_TRUE(ZVSamplePositions(INT64_MIN).IsBeforeEnd(1)) << "an unknown length ends nothing";
    EXPECT_FALSE(ZVSamplePositions(45 * Second).IsBeforeEnd(1));
    EXPECT_TRUE(ZVSamplePositions(45 * Second + 1).IsBeforeEnd(1));
    EXPECT_TRUE(ZVSamplePositions(7200 * Second).IsBeforeEnd(4));
    EXPECT_TRUE(ZVSamplePositions(INT64_MAX).IsBeforeEnd(8));
}
}
