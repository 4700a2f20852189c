#include "video/blackbars/ZVBlackBarVerdict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace
{
using Trackers = std::vector<sRectTracker>;

constexpr double Square = 1.0;

ZVBlackBarVerdict Weigh(const Trackers& trackers, double pixelAspect = Square)
{
    ZVArray<sRectTracker> list;
    for (const sRectTracker& tracker : trackers)
        list.Add(tracker);
    return ZVBlackBarVerdict(list, pixelAspect);
}

// A picture of some width and 1000 lines, that is near to no other number's.
ZVRect Picture(int32_t width, int32_t number = 0)
{
    return {0, number * 100, width, number * 100 + 1000};
}

// One hundred hits: those of the first picture, and the others in pictures of as many as the second has.
Trackers Share(int32_t top, int32_t next, int32_t width)
{
    Trackers trackers {
        {Picture(width), top, 0}
    };
    for (int32_t rest = 100 - top; rest > 0; rest -= next)
    {
        const auto number = static_cast<int32_t>(trackers.size());
        trackers.push_back({Picture(width, number), std::min(next, rest), number});
    }
    return trackers;
}

constexpr int32_t CommonWidth = 2390;
constexpr int32_t OtherWidth = 2000;

TEST(ZVBlackBarVerdict, ScoresTheSharesOfThePictures)
{
    struct Row
    {
        int32_t Top;
        int32_t Next;
        int32_t Common;  // the score of a picture in a common aspect
        int32_t Other;
    };
    // clang-format off
    constexpr Row rows[] = {
        {100, 0, 5, 5}, {90, 10, 5, 5},
        {89,  4, 5, 5}, {89,  5, 5, 4}, {80,  4, 5, 5}, {80, 5, 5, 4}, {80, 20, 5, 4},
        {79, 10, 4, 4}, {79, 11, 4, 3}, {79, 15, 4, 3}, {79, 16, 3, 3},
        {60, 10, 4, 4}, {60, 11, 4, 3}, {60, 15, 4, 3}, {60, 16, 3, 3}, {60, 40, 3, 3},
        {59, 10, 3, 2}, {59, 11, 2, 2}, {50, 10, 3, 2}, {50, 11, 2, 2}, {50, 50, 2, 2},
        {49, 10, 2, 2}, {45, 40, 2, 2}, {40, 40, 2, 2},
        {39, 39, 2, 1}, {20, 20, 2, 1},
    };
    // clang-format on
    for (const Row& row : rows)
    {
        EXPECT_EQ(Weigh(Share(row.Top, row.Next, CommonWidth)).GetScore(), row.Common) << row.Top << ", " << row.Next;
        EXPECT_EQ(Weigh(Share(row.Top, row.Next, OtherWidth)).GetScore(), row.Other) << row.Top << ", " << row.Next;
    }
}

TEST(ZVBlackBarVerdict, KnowsTheAspectsInWhichFilmsAreMade)
{
    // The first and the last width that are one: 15 thousandths around 1.333, 1.37, 1.667, 1.778, 1.85, 2.35 and 2.39 to 2.4.
    constexpr int32_t ranges[][2] = {
        {1319, 1347},
        {1356, 1384},
        {1653, 1681},
        {1764, 1792},
        {1836, 1864},
        {2336, 2364},
        {2376, 2414}
    };
    const auto isCommon = [](int32_t width, double pixelAspect)
    { return Weigh(Share(39, 39, width), pixelAspect).GetScore() == 2; };
    for (const auto& [first, last] : ranges)
    {
        EXPECT_TRUE(isCommon(first, Square)) << first;
        EXPECT_TRUE(isCommon(last, Square)) << last;
        EXPECT_FALSE(isCommon(first - 2, Square)) << first;
        EXPECT_FALSE(isCommon(last + 2, Square)) << last;
    }
    EXPECT_TRUE(isCommon(1000, 1.85)) << "as it is shown, not as it is stored";
    EXPECT_FALSE(isCommon(1850, 1.1));
}

TEST(ZVBlackBarVerdict, StandsInTheOrderOfHitsAndThenOfTime)
{
    // In the order in which they are expected.
    const Trackers expected = {
        {{0, 300, 900, 600},  9, 70            },
        {{0, 0, 100, 100},    5, 2             },
        {{0, 100, 900, 800},  5, 3             },
        {{200, 0, 700, 700},  5, 3             },
        {{200, 50, 700, 700}, 5, 3             },
        {{200, 50, 720, 700}, 5, 3             },
        {{200, 50, 720, 750}, 5, 3             },
        {{0, 600, 900, 900},  5, AV_NOPTS_VALUE},
    };
    Trackers shuffled = expected;
    for (size_t turn = 0; turn < expected.size(); ++turn)
    {
        std::rotate(shuffled.begin(), shuffled.begin() + 3, shuffled.end());
        const ZVBlackBarVerdict verdict = Weigh(shuffled);
        ASSERT_EQ(verdict.GetEntries().GetCount(), static_cast<int32_t>(expected.size()));
        for (size_t index = 0; index < expected.size(); ++index)
            EXPECT_EQ(verdict.GetEntries()[static_cast<int32_t>(index)].Rect, expected[index].Rect) << index;
    }
}

TEST(ZVBlackBarVerdict, MergesWhatIsNearInOnePass)
{
    struct Row
    {
        const char* Name;
        Trackers Given;
        Trackers Expected;
    };
    const Row rows[] = {
        {"each side 8 apart",                              {{{8, 108, 1908, 908}, 20, 5}, {{0, 100, 1900, 900}, 10, 1}}, {{{0, 100, 1908, 908}, 30, 5}}},
        {"the bottom 9 apart",
         {{{0, 100, 1900, 909}, 20, 5}, {{0, 100, 1900, 900}, 10, 1}},
         {{{0, 100, 1900, 909}, 20, 5}, {{0, 100, 1900, 900}, 10, 1}}                                                                                  },
        {"the left 9 apart",
         {{{9, 100, 1900, 900}, 20, 5}, {{0, 100, 1900, 900}, 10, 1}},
         {{{9, 100, 1900, 900}, 20, 5}, {{0, 100, 1900, 900}, 10, 1}}                                                                                  },
        {"near only to what the first has grown to",
         {{{0, 100, 1900, 900}, 20, 5}, {{0, 92, 1900, 900}, 10, 1}, {{0, 84, 1900, 900}, 5, 0}},
         {{{0, 84, 1900, 900}, 35, 5}}                                                                                                                 },
        {"near to what has grown, but passed over before",
         {{{0, 100, 1900, 900}, 20, 5}, {{0, 84, 1900, 900}, 10, 1}, {{0, 92, 1900, 900}, 5, 0}},
         {{{0, 92, 1900, 900}, 25, 5}, {{0, 84, 1900, 900}, 10, 1}}                                                                                    },
        {"more together than the first",
         {{{0, 100, 1900, 900}, 20, 5}, {{0, 0, 1900, 1000}, 15, 1}, {{0, 4, 1900, 1004}, 12, 0}},
         {{{0, 0, 1900, 1004}, 27, 1}, {{0, 100, 1900, 900}, 20, 5}}                                                                                   },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const ZVBlackBarVerdict verdict = Weigh(row.Given);
        ASSERT_EQ(verdict.GetEntries().GetCount(), static_cast<int32_t>(row.Expected.size()));
        for (int32_t index = 0; const sRectTracker& expected : row.Expected)
        {
            const sRectTracker& entry = verdict.GetEntries()[index++];
            EXPECT_EQ(entry.Rect, expected.Rect);
            EXPECT_EQ(entry.Hits, expected.Hits);
            EXPECT_EQ(entry.FirstPts, expected.FirstPts);
        }
    }
}

}
