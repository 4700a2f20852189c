#include "video/basic/ZVTelevisionTags.h"

#include "core/property/ZVPropertyMap.h"
#include "core/string/ZVStringUTF8.h"
#include "support/PropertyLines.h"
#include "system/library/ZVPlayers.h"
#include "video/StandIns.h"
#include "video/WithTools.h"
#include "video/basic/ZVTagMapper.h"

#include <gtest/gtest.h>

namespace
{
using Lines = std::set<std::string>;

class ZVTelevisionTagsTest : public WithTools
{
protected:
    // What becomes of properties when a recording has tags.
    static Lines Map(const std::map<std::string, const wchar_t*>& tags, const Lines& before = {})
    {
        StandIns::Show({.Tags = tags});
        const ZVVideoPlayerPointer player = ZVPlayers::CreateVideoPlayer();
        ZVPropertyMap properties;
        for (const std::string& line : before)
        {
            const size_t end = line.find('=');
            properties.SetString(ZVString::FromUTF8(line.substr(0, end).c_str()),
                                 ZVString::FromUTF8(line.substr(end + 1).c_str()));
        }
        ZVTelevisionTags::Map(ZVTagMapper(*player, properties));
        return GetLines(properties);
    }
};

TEST_F(ZVTelevisionTagsTest, TellWhenItWasSentAndRecorded)
{
    // Two hours ahead of UTC.
    setenv("TZ", "ZVT-2", 1);
    tzset();
    constexpr char Sent[] = "WM/MediaOriginalBroadcastDateTime";
    constexpr char Released[] = "WM/OriginalReleaseTime";
    struct Row
    {
        std::map<std::string, const wchar_t*> Tags;
        Lines Expected;
    };
    const Row rows[] = {
        {{{Sent, L"2024-05-06T06:00:00Z"}, {Released, L"2001"}},                                        {"Date=45418.25"}         },
        {{{Sent, L"0001-01-01t00:00:00z"}, {Released, L"2024-05-06"}},                                  {"Date=45418"}            },
        {{{Released, L"2024-05-06"}},                                                                   {"Date=45418"}            },
        {{{Sent, L"0001-01-01T00:00:00Z"}, {Released, L"0"}},                                           {}                        },
        {{{Sent, L"0"}, {Released, L"2024-05-06"}},                                                     {}                        },
        {{{Released, L"0001-01-01T00:00:00Z"}},                                                         {}                        },
        {{{"WM/WMRVEncodeTime", L"2024-05-06T04:00:00Z"}, {"WM/WMRVEndTime", L"2024-05-07T04:00:00Z"}},
         {"Date Recorded=45418.25"}                                                                                               },
        {{{"WM/WMRVEndTime", L"2024-05-07T04:00:00Z"}},                                                 {"Date Recorded=45419.25"}},
        {{{"WM/WMRVEncodeTime", L"2024-05-06T06:00:00"}},                                               {"Date Recorded=45418.25"}},
        {{{"WM/MediaIsMovie", L"1"}},                                                                   {"Media Sub Type=Movie"}  },
        {{{"WM/MediaIsMovie", L"TRUE"}},                                                                {"Media Sub Type=Movie"}  },
        {{{"WM/MediaIsMovie", L"0"}},                                                                   {"Media Sub Type=TV Show"}},
        {{{"WM/MediaIsMovie", L"perhaps"}},                                                             {"Media Sub Type=TV Show"}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Map(row.Tags), row.Expected) << row.Tags.begin()->first;
    EXPECT_EQ(Map(
                  {
                      {Sent, L"2024-05-06"}
    },
                  {"Date=1"}),
              (Lines {"Date=1"}));
    unsetenv("TZ");
    tzset();
}
}
