#include "video/extended/ZVSamplePositions.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
constexpr int64_t Second = 1'000'000;

TEST(ZVSamplePositions, LieAnEighthApartBehindTheFirstTwo)
{
    using Seconds = std::vector<int32_t>;
    const struct
    {
        const char* Name;
        int64_t Duration;
        Seconds Expected;
    } rows[] = {
        {"not known",                      INT64_MIN,                           {0, 45}                                         },
        {"empty",                          0,                                   {0, 45}                                         },
        {"negative",                       -100 * Second,                       {0, 45}                                         },
        {"an instant",                     1,                                   {0, 45, 0, 0, 0, 0, 0, 0, 0}                    },
        {"fractions are cut twice",        87'999'999,                          {0, 45, 10, 20, 30, 40, 50, 60, 70}             },
        {"two hours",                      7200 * Second,                       {0, 45, 900, 1800, 2700, 3600, 4500, 5400, 6300}},
        {"seconds are counted in 32 bits", (80 + (int64_t {1} << 32)) * Second, {0, 45, 10, 20, 30, 40, 50, 60, 70}             },
    };
    for (const auto& row : rows)
    {
        const ZVSamplePositions positions(row.Duration);
        Seconds seconds;
        for (int32_t index = 0; index < positions.GetCount(); ++index)
            seconds.push_back(positions.Get(index));
        EXPECT_EQ(seconds, row.Expected) << row.Name;
    }
}

TEST(ZVSamplePositions, AreComparedWithTheEndInWrappedMicroseconds)
{
    const struct
    {
        const char* Name;
        int64_t Duration;
        int32_t Index;
        bool Expected;
    } rows[] = {
        {"45 s of no known length", INT64_MIN,       1, false},
        {"45 s of 45 s",            45 * Second,     1, false},
        {"45 s of a little more",   45 * Second + 1, 1, true },
        {"5 s of 40 s",             40 * Second,     2, true },
        {"2100 s of 2400 s",        2400 * Second,   8, true },
 // 2700 s wrap to a negative value, 5400 s to 1105 s: both are below the length.
        {"2700 s of two hours",     7200 * Second,   4, true },
        {"5400 s of two hours",     7200 * Second,   7, true },
 // The length wraps to 2400 s, of which 2100 s are before, though also before the real one.
        {"of more than a lifetime", INT64_MAX,       8, true },
    };
    for (const auto& row : rows)
        EXPECT_EQ(ZVSamplePositions(row.Duration).IsBeforeEnd(row.Index), row.Expected) << row.Name;
}

TEST(ZVSamplePositions, TheOpeningCountsOnlyWithoutBetterPlaces)
{
    EXPECT_FALSE(ZVSamplePositions(0).IsOpening(0));
    EXPECT_TRUE(ZVSamplePositions(Second).IsOpening(0));
    EXPECT_FALSE(ZVSamplePositions(Second).IsOpening(1));
}
}
