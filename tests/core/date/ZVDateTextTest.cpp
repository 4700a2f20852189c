#include "core/date/ZVDateText.h"

#include "TimeZone.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVSpanText.h"
#include "core/string/StringProbe.h"

#include <cmath>

// The cases stand in columns.
// clang-format off

namespace
{
using namespace ZVDate;

constexpr double Year = 45292.0;                             // 2024
constexpr double Day = 45418.0;                              // 2024-05-06, a Monday
constexpr double Midnight = Day + MidnightMark;              // 2024-05-06 00:00:00
constexpr double Noon = Day + 0.5;
constexpr double Evening = Day + (19 * 3600 + 8) / 86400.0;  // 19:00:08
constexpr double Early = -693593.0 + 0.5;                    // 0001-01-01 12:00:00, a Monday

TEST(ZVDateText, WritesForMachines)
{
    const TimeZone zone(TimeZone::NewYork);
    ExpectTexts({
        {ToISO(Evening, true), L"2024-05-06T19:00:08-04:00"}, {ToISO(Day, true, true), L"2024-05-06"},
        {ToISO(Year, true, true), L"2024"}, {ToISO(Midnight, false, true), L"2024-05-06T00:00:00"},
        {ToISO(Year), L"2024-01-01T00:00:00"}, {ToISO(Early, false, true), L"0001-01-01T12:00:00"},
        {ToCompactUTC(Evening), L"20240506T190008Z"}, {ToRFC1123(Evening), L"Mon, 6 May 2024 19:00:08 GMT"},
        {ToISO(0.0), L""}, {ToCompactUTC(0.0), L""}, {ToRFC1123(0.0), L""}, {ToFileNameText(0.0), L""},
    });
    const TimeZone none("UTC0");
    EXPECT_STREQ(ToISO(Evening, true), L"2024-05-06T19:00:08Z");
}

TEST(ZVDateText, WritesForPeople)
{
    using enum ZVDateClock;
    ExpectTexts({
        {ToDecade(FromFields(-5, 1, 1)), L"-10's"}, {ToTimeOfDay(Noon, Hours24), L"12:00"}, {ToTimeOfDay(Year, Hours24), L""},
        {ToTimeOfDay(Noon, Hours24, ZVDateSeconds::Always), L"12:00:00"}, {ToTimeOfDay(Midnight, Hours12), L"12:00 am"},
        {ToTimeWords(Midnight), L"Midnight"}, {ToTimeWords(Noon), L"Noon"}, {ToTimeWords(Noon + 1 / 86400.0), L"12:00:01 pm"},
        {ToTimeWords(Day), L""}, {ToShortDate(WithYear(Evening, YearOf(Now()))), L"May 6"}, {ToShortDate(Year), L"2024"},
        {ToDecade(0.0), L""}, {ToShortDate(0.0), L""}, {ToTimeWords(0.0), L""},
    });
}

TEST(ZVDateText, WritesByPatterns)
{
    const double now = Now();
    ExpectTexts({
        {Format(Evening, L"xYearx MONTH dayordinal, dayname hour:minute:second"), L"x2024x May 6th, Monday 19:00:08"},
        {Format(Evening, L"date|time|datetime|filename|decade"), L"05/06/24|19:00:08|05/06/24 19:00:08|20240506-190008|2020's"},
        {Format(Evening, L"shortdate|shorttime|shortdatetime"), L"May 6 2024|19:00|May 6 2024 19:00"},
        {Format(Day, L"date|time|datetime|hour|shortdatetime"), L"05/06/24||05/06/24||May 6 2024"},
        {Format(Year, L"date|month|dayname|datetime"), L"2024|||2024"}, {Format(Day, L"\"year"), L"year"},
        {Format(now - 3.0, L"elapsed|elapsedago"), L"3.0 days|3.0 days ago"},
        {Format(now + 3.0 + 1e-5, L"elapsedago"), L"in 3.0 days"},
        {Format(Day, L"\"the year\" year \"a \"\"date\"\"\" \"\""), L"the year 2024 a \"date\" \""},
        {Format(Evening, L"%Y-%m-%d %H:%M:%S %j %I %p %y %w %U %W %%"), L"2024-05-06 19:00:08 127 07 PM 24 1 18 19 %"},
        {Format(Evening, L"%A %a %B %b"), L"Monday Mon May May"}, {Format(Day, L"%Q %"), L"%Q %"},
        {Format(Evening, L"%c|%x|%X"), L"Mon May  6 19:00:08 2024|05/06/24|19:00:08"},
        {Format(Day, L"\"year\" %Y", CodesOnly), L"\"year\" 2024"}, {Format(0.0, L"year"), L""}, {Format(Day, nullptr), L""},
    });
}

TEST(ZVSpanText, WritesSpansInWordsAndAsAClock)
{
    ExpectRows<std::pair<double, int32_t>, std::wstring>({
        {{31536000.0, 1}, L"1.00 years"}, {{31535999.0, 1}, L"365.0 days"}, {{172800.0, 1}, L"2.0 days"},
        {{172799.0, 0}, L"48.0 hours"}, {{7200.0, 1}, L"2.0 hours"}, {{7199.0, 1}, L"120 minutes"}, {{60.0, 1}, L"1 minutes"},
        {{59.9, 1}, L"59 seconds"}, {{86399.0, 0}, L"23:59:59"}, {{86400.0, 0}, L"24.0 hours"}, {{3570.0, 2}, L"1 hour"},
        {{7500.0, 2}, L"2 hours 5 minutes"}, {{7440.0, 3}, L"2.1 hours"}, {{7380.0, 3}, L"2 hours"}, {{3900.0, 4}, L"1 hour"},
        {{3960.0, 4}, L"1 hour 6 minutes"}, {{121.0, 5}, L"2 minutes 1 second"}, {{59.0, 5}, L"59 seconds"},
        {{-7500.0, 2}, L"-2 hours 5 minutes"}, {{-5.0, 2}, L"0 minutes"}, {{HUGE_VAL, 1}, L""},
    }, [](const auto& span) { return std::wstring(ElapsedText(span.first, span.second)); });
    ExpectTexts({
        {TimeText(65.0, 1), L"1:05"}, {TimeText(3723.0, 1), L"1:02:03"}, {TimeText(5.0, 0), L"0:00:05"},
        {TimeText(7200.0, 2), L"02:00:00"}, {TimeText(3723.0, 2), L"62:03"}, {TimeText(3723.0, -1), L"62:03"},
        {TimeText(-65.0, 1), L"-1:05"}, {TimeText(-3723.0, 1), L"-1:02:03"}, {TimeText(-0.4, 1), L"0:00"},
        {TimeText(65.25, 1, 1), L"1:05.3"}, {TimeText(3599.96, 1, 1), L"1:00:00.0"},
        {TimeText(1e300, 1, 99), L"2500000000:00:00.000000"},
    });
}
}
