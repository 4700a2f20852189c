#include "video/thumbnail/CZVThumbGrabber.h"

#include "system/library/ZVPlayers.h"
#include "video/StandIns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;

// Longer than any test may take: an attempt that nothing ends is a failure.
constexpr int32_t WaitWithoutEnd = 300'000;

// The value of the picture that is taken of a film, -1 without one.
int Grab(const StandInFilm& film, int32_t timeMs = 5000, int32_t waitMs = WaitWithoutEnd)
{
    StandIns::Show(film);
    const ZVVideoPlayerPointer player = ZVPlayers::CreateVideoPlayer();
    CZVThumbGrabber grabber(*player, waitMs);
    ZVImagePointer image;
    const bool isGrabbed = grabber.Grab(timeMs, image);
    EXPECT_EQ(isGrabbed, image != nullptr);
    return image == nullptr ? -1 : StandIns::GetValue(*image);
}

TEST(CZVThumbGrabber, StaysClearOfTheEnd)
{
    struct Row
    {
        const char* Name;
        int64_t Duration;
        int32_t TimeMs;
        const char* First;
        const char* Second;
    };
    const Row rows[] = {
        {"a long film",       600'000,   5000,      "Seek 5000",       "Seek 65000"     },
        {"a short film",      9000,      5000,      "Seek -1000",      "Seek -1000"     },
        {"a millisecond",     1,         0,         "Seek -9999",      "Seek -9999"     },
        {"a time after it",   60'000,    120'000,   "Seek 50000",      "Seek 50000"     },
        {"only the second",   70'000,    5000,      "Seek 5000",       "Seek 60000"     },
        {"unknown",           0,         5000,      "Seek 5000",       "Seek 65000"     },
        {"negative duration", -1,        5000,      "Seek 5000",       "Seek 65000"     },
        {"negative time",     600'000,   -3000,     "Seek -3000",      "Seek 57000"     },
        {"the last time",     0,         INT32_MAX, "Seek 2147483647", "Seek 2147543647"},
        {"without end",       INT64_MAX, INT32_MAX, "Seek 2147483647", "Seek 2147543647"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        EXPECT_EQ(Grab({.Duration = row.Duration, .Ends = true}, row.TimeMs), -1);
        EXPECT_THAT(StandIns::GetCalls(), ElementsAre(row.First, "Play", "Stop", row.Second, "Play", "Stop", "Release"));
    }
}

TEST(CZVThumbGrabber, TakesTheFirstFrameThatIsNotBlank)
{
    const auto afterBlank = [](size_t count, uint8_t value)
    {
        std::vector<uint8_t> frames(count, 0);
        frames.insert(frames.end(), {value, 99});
        return frames;
    };
    struct Row
    {
        const char* Name;
        StandInFilm Film;
        int Value;
        int Attempts;
    };
    const Row rows[] = {
        {"at once",                  {.Attempts = {{7, 8, 9}}},                            7,  1},
        {"later",                    {.Attempts = {{0, 0, 7}}},                            7,  1},
        {"the eleventh",             {.Attempts = {afterBlank(10, 7)}},                    7,  1},
        {"the twelfth is too late",  {.Attempts = {afterBlank(11, 7), afterBlank(11, 7)}}, -1, 2},
        {"a minute later",           {.Attempts = {afterBlank(11, 7), afterBlank(10, 8)}}, 8,  2},
        {"before the end",           {.Attempts = {{0, 7}}, .Ends = true},                 7,  1},
        {"only after the end",       {.Attempts = {{0}, {7}}, .Ends = true},               7,  2},
        {"no frame before the end",  {.Ends = true},                                       -1, 2},
        {"a film that is not shown", {.Plays = false},                                     -1, 2},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        EXPECT_EQ(Grab(row.Film), row.Value);
        EXPECT_THAT(StandIns::GetCalls(), testing::Contains("Play").Times(row.Attempts));
    }
}

TEST(CZVThumbGrabber, GivesUpAPlayerThatDeliversNothing)
{
    EXPECT_EQ(Grab({}, 5000, 20), -1);
}

// The wait is over, and the player brings a frame to its end before it stops.
TEST(CZVThumbGrabber, TakesAFrameThatComesWhileThePlayerStops)
{
    EXPECT_EQ(Grab({.Attempts = {{7}}, .Ends = true, .IsLate = true}, 5000, 20), 7);
    EXPECT_THAT(StandIns::GetCalls(), ElementsAre("Seek 5000", "Play", "Stop", "Release"));
}
}
