#include "mp4/quicktime/FindISO6709Point.h"

#include <gtest/gtest.h>

// Every row is what the regular expression of another language finds.
TEST(FindISO6709Point, FindsWhatTheRegularExpressionFinds)
{
    constexpr wchar_t None[] = L"(none)";
    const struct
    {
        const wchar_t* Text;
        const wchar_t* Latitude;
        const wchar_t* Longitude;
        const wchar_t* Altitude;
    } rows[] = {
        {L"+48.8577+002.295/",        L"+48.8577", L"+002.295",  L""      },
        {L"+35.6895+139.6917+040.5/", L"+35.6895", L"+139.6917", L"+040.5"},
        {L"N48.85W2.29",              L"N48.85",   L"W2.29",     L""      },
        {L"S12.3E45.6-7",             L"S12.3",    L"E45.6",     L"-7"    },
        {L"\u00e9+1+2\u00e9",         L"+1",       L"+2",        L""      },
        {L"x+1.5-2.5 +9+9",           L"+1.5",     L"-2.5",      L""      },
        {L"+.+.+.",                   L"+.",       L"+.",        L"+."    },
        {L"48.8577",                  L"48.85",    L"77",        L""      },
        {L"+48.85, +2.29",            L"+48.",     L"85",        L""      },
        {L"+123",                     L"+1",       L"23",        L""      },
        {L"+12",                      None,        None,         None     },
        {L"+48,+2",                   None,        None,         None     },
        {L"T5+5",                     None,        None,         None     },
        {L"",                         None,        None,         None     },
    };
    for (const auto& row : rows)
    {
        ISO6709Point point = {None, None, None};
        EXPECT_EQ(FindISO6709Point(row.Text, point), row.Latitude != None) << row.Text;
        EXPECT_EQ(point.Latitude, row.Latitude) << row.Text;
        EXPECT_EQ(point.Longitude, row.Longitude) << row.Text;
        EXPECT_EQ(point.Altitude, row.Altitude) << row.Text;
    }
}
