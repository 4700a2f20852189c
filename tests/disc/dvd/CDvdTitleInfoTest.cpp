#include "disc/dvd/CDvdTitleInfo.h"

#include "core/bytes/ZVByteSpan.h"
#include "disc/dvd/DvdBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

bool Read(CDvdTitleInfo& info, const std::string& file)
{
    return info.Read(ZVByteSpan(file.data(), static_cast<int64_t>(file.size())));
}

std::vector<int64_t> ChaptersOf(const CDvdTitleInfo& info)
{
    return {info.Chapters.begin(), info.Chapters.end()};
}

TEST(CDvdTitleInfo, ReadsTimes)
{
    const std::tuple<const char*, int64_t> rows[] = {
        {"\x01\x59\x09\x40", 7'149'000  },
        {"\x00\x00\x01\x52", 1'480      }, // 12 of 25 frames
        {"\x00\x00\x01\xd5", 1'501      }, // 45 frames of 1001/30000 s
        {"\x01\x00\x00\xc0", 3'603'600  }, // 108000 of them
        {"\x00\x00\x01\x12", 1'000      }, // frames of no rate
        {"\x99\x99\x99\x40", 362'439'000},
        {"\x00\x00\x0a\x40", 0          },
        {"\xa0\x00\x01\x40", 0          },
        {"\x00\x00\x01\x4a", 0          },
    };
    for (const auto& [time, expected] : rows)
    {
        CDvdTitleInfo info;
        EXPECT_EQ(Read(info, DvdBytes::File({{std::string(time, 4)}})), expected != 0) << testing::PrintToString(time);
        EXPECT_EQ(info.Duration, expected) << testing::PrintToString(time);
    }
}

TEST(CDvdTitleInfo, TakesTheLongestChainAndItsChapters)
{
    const auto seconds = [](char bcd) { return std::string {0, 0, bcd, 0x40}; };
    // A plain cell, three angles of one scene, and a plain one.
    DvdBytes::Chain film {seconds(0x12), "\x01\x02\x05"};
    film.Cells = {
        {0x00, seconds(0x05)},
        {0x50, seconds(0x03)},
        {0x90, seconds(0x03)},
        {0xd0, seconds(0x03)},
        {0x00, seconds(0x04)},
    };
    const std::string file = DvdBytes::File({{seconds(0x11)}, {"\xff\xff\xff\xff"}, film, {seconds(0x12)}});
    CDvdTitleInfo info;
    ASSERT_TRUE(Read(info, file));
    EXPECT_EQ(info.Duration, 12'000);
    EXPECT_THAT(ChaptersOf(info), ElementsAre(0, 5'000, 8'000));

    // Each damage leaves the duration, but a list of chapters that would be wrong is not told at all.
    for (const char* const programs : {"\x01\x02\x06", "\x01\x02\x02", "\x02\x01\x05", "\x00\x02\x05"})
    {
        film.Programs.assign(programs, 3);
        EXPECT_TRUE(Read(info, DvdBytes::File({film}))) << testing::PrintToString(programs);
        EXPECT_EQ(info.Duration, 12'000);
        EXPECT_THAT(ChaptersOf(info), IsEmpty()) << testing::PrintToString(programs);
    }
    film.Programs = "\x01\x02\x05";
    film.Cells[1].Time[2] = 0x0f;
    EXPECT_TRUE(Read(info, DvdBytes::File({film})));
    EXPECT_THAT(ChaptersOf(info), IsEmpty());
}
}
