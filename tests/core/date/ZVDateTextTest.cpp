#include "core/date/ZVDateText.h"

#include "TimeZone.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVSpanText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

namespace
{
constexpr double Year = 45292.0;                         // 2024
constexpr double Day = 45418.0;                          // 2024-05-06, a Monday
constexpr double Midnight = Day + ZVDate::MidnightMark;  // 2024-05-06 00:00:00
constexpr double Noon = Day + 0.5;
constexpr double Evening = Day + (19 * 3600 + 8) / 86400.0;  // 19:00:08
constexpr double Early = -693593.0 + 0.5;                    // 0001-01-01 12:00:00, a Monday

// Sets the locale of the process while it lives.
struct Locale
{
    explicit Locale(const char* name) : IsThere(setlocale(LC_ALL, name) != nullptr) {}
    ~Locale() { setlocale(LC_ALL, "C"); }
    const bool IsThere;
};

TEST(ZVDateText, WritesForMachines)
{
    const TimeZone zone(TimeZone::NewYork);
    EXPECT_STREQ(ZVDate::ToISO(Evening), L"2024-05-06T19:00:08");
    EXPECT_STREQ(ZVDate::ToISO(Evening, true), L"2024-05-06T19:00:08-04:00");
    EXPECT_STREQ(ZVDate::ToISO(Day, true, true), L"2024-05-06");
    EXPECT_STREQ(ZVDate::ToISO(Year, true, true), L"2024");
    EXPECT_STREQ(ZVDate::ToISO(Midnight, false, true), L"2024-05-06T00:00:00");
    EXPECT_STREQ(ZVDate::ToISO(Year), L"2024-01-01T00:00:00");
    EXPECT_STREQ(ZVDate::ToISO(Early, false, true), L"0001-01-01T12:00:00");
    EXPECT_STREQ(ZVDate::ToCompactUTC(Evening), L"20240506T190008Z");
    EXPECT_STREQ(ZVDate::ToRFC1123(Evening), L"Mon, 6 May 2024 19:00:08 GMT");
    EXPECT_STREQ(ZVDate::ToISO(0.0) + ZVDate::ToCompactUTC(0.0) + ZVDate::ToRFC1123(0.0) + ZVDate::ToFileNameText(0.0), L"");
    const TimeZone none("UTC0");
    EXPECT_STREQ(ZVDate::ToISO(Evening, true), L"2024-05-06T19:00:08Z");
}

TEST(ZVDateText, WritesForPeople)
{
    const double thisYear = ZVDate::WithYear(Evening, ZVDate::YearOf(ZVDate::Now()));
    EXPECT_STREQ(ZVDate::ToDecade(ZVDate::FromFields(-5, 1, 1)), L"-10's");
    EXPECT_STREQ(ZVDate::ToTimeOfDay(Noon, true), L"12:00");
    EXPECT_STREQ(ZVDate::ToTimeOfDay(Noon, true, ZVDateSeconds::Always), L"12:00:00");
    EXPECT_STREQ(ZVDate::ToTimeOfDay(Midnight, false), L"12:00 am");
    EXPECT_STREQ(ZVDate::ToTimeWords(Midnight), L"Midnight");
    EXPECT_STREQ(ZVDate::ToTimeWords(Noon), L"Noon");
    EXPECT_STREQ(ZVDate::ToTimeWords(Noon + 1 / 86400.0), L"12:00:01 pm");
    EXPECT_STREQ(ZVDate::ToTimeWords(Day) + ZVDate::ToTimeOfDay(Year, true), L"");
    EXPECT_STREQ(ZVDate::ToShortDate(Day), L"May 6 2024");
    EXPECT_STREQ(ZVDate::ToShortDate(thisYear), L"May 6");
    EXPECT_STREQ(ZVDate::ToShortDate(Year), L"2024");
    EXPECT_STREQ(ZVDate::ToDecade(0.0) + ZVDate::ToShortDate(0.0) + ZVDate::ToTimeWords(0.0), L"");
}

TEST(ZVDateText, FollowsTheLocaleOnlyWhereItIsForPeople)
{
    const Locale german("de_DE.UTF-8");
    if (!german.IsThere)
        GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed";
    const double march = ZVDate::FromFields(2024, 3, 5, 7, 8, 9);  // a Tuesday
    EXPECT_STREQ(ZVDate::ToRFC1123(march), L"Tue, 5 Mar 2024 07:08:09 GMT");
    EXPECT_STREQ(ZVDate::Format(march, L"month dayname"), L"M\u00e4rz Dienstag");
    EXPECT_STREQ(ZVDate::Format(march, L"%a %B", ZVDate::EnglishNames), L"Tue March");
    EXPECT_STREQ(ZVDate::Format(march, L"date"), L"05.03.2024");
    EXPECT_STREQ(ZVDate::ToTimeOfDay(march, false), L"07:08:09 am");
    EXPECT_STREQ(ZVDate::ToShortDate(march, ZVDate::EnglishNames), L"5 Mar 2024");
}

TEST(ZVDateText, WritesByPatterns)
{
    const double now = ZVDate::Now();
    EXPECT_STREQ(ZVDate::Format(Evening, L"Year MONTH dayordinal, dayname hour:minute:second"), L"2024 May 6th, Monday 19:00:08");
    EXPECT_STREQ(ZVDate::Format(Evening, L"xyearx"), L"x2024x");
    EXPECT_STREQ(ZVDate::Format(Evening, L"date|time|datetime|filename|decade"),
                 L"05/06/24|19:00:08|05/06/24 19:00:08|20240506-190008|2020's");
    EXPECT_STREQ(ZVDate::Format(Evening, L"shortdate|shorttime|shortdatetime"), L"May 6 2024|19:00|May 6 2024 19:00");
    EXPECT_STREQ(ZVDate::Format(Day, L"date|time|datetime|hour|shortdatetime"), L"05/06/24||05/06/24||May 6 2024");
    EXPECT_STREQ(ZVDate::Format(Year, L"date|month|dayname|datetime"), L"2024|||2024");
    EXPECT_STREQ(ZVDate::Format(now - 3.0, L"elapsed|elapsedago"), L"3.0 days|3.0 days ago");
    EXPECT_STREQ(ZVDate::Format(now + 3.0 + 1e-5, L"elapsedago"), L"in 3.0 days");
    EXPECT_STREQ(ZVDate::Format(Day, L"\"the year\" year \"a \"\"date\"\"\" \"\""), L"the year 2024 a \"date\" \"");
    EXPECT_STREQ(ZVDate::Format(Day, L"\"year"), L"year");
    EXPECT_STREQ(ZVDate::Format(Evening, L"%Y-%m-%d %H:%M:%S %j %I %p %y %w %U %W %%"),
                 L"2024-05-06 19:00:08 127 07 PM 24 1 18 19 %");
    EXPECT_STREQ(ZVDate::Format(Evening, L"%A %a %B %b"), L"Monday Mon May May");
    EXPECT_STREQ(ZVDate::Format(Evening, L"%c|%x|%X"), L"Mon May  6 19:00:08 2024|05/06/24|19:00:08");
    EXPECT_STREQ(ZVDate::Format(Day, L"%Q %"), L"%Q %");
    EXPECT_STREQ(ZVDate::Format(Day, L"\"year\" %Y", ZVDate::CodesOnly), L"\"year\" 2024");
    EXPECT_STREQ(ZVDate::Format(0.0, L"year"), L"");
    EXPECT_STREQ(ZVDate::Format(Day, nullptr), L"");
}

TEST(ZVSpanText, TellsSpansInWordsAndAsAClock)
{
    EXPECT_STREQ(ZVDate::ElapsedText(31536000.0, 1), L"1.00 years");
    EXPECT_STREQ(ZVDate::ElapsedText(31535999.0, 1), L"365.0 days");
    EXPECT_STREQ(ZVDate::ElapsedText(172800.0, 1), L"2.0 days");
    EXPECT_STREQ(ZVDate::ElapsedText(172799.0, 0), L"48.0 hours");
    EXPECT_STREQ(ZVDate::ElapsedText(7200.0, 1), L"2.0 hours");
    EXPECT_STREQ(ZVDate::ElapsedText(7199.0, 1), L"120 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(60.0, 1), L"1 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(59.9, 1), L"59 seconds");
    EXPECT_STREQ(ZVDate::ElapsedText(86399.0, 0), L"23:59:59");
    EXPECT_STREQ(ZVDate::ElapsedText(86400.0, 0), L"24.0 hours");
    EXPECT_STREQ(ZVDate::ElapsedText(3570.0, 2), L"1 hour");
    EXPECT_STREQ(ZVDate::ElapsedText(7500.0, 2), L"2 hours 5 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(7440.0, 3), L"2.1 hours");
    EXPECT_STREQ(ZVDate::ElapsedText(7380.0, 3), L"2 hours");
    EXPECT_STREQ(ZVDate::ElapsedText(90.0, 3), L"2 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(3900.0, 4), L"1 hour");
    EXPECT_STREQ(ZVDate::ElapsedText(3960.0, 4), L"1 hour 6 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(120.0, 4), L"2 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(3719.0, 5), L"1 hour 1 minute");
    EXPECT_STREQ(ZVDate::ElapsedText(121.0, 5), L"2 minutes 1 second");
    EXPECT_STREQ(ZVDate::ElapsedText(59.0, 5), L"59 seconds");
    EXPECT_STREQ(ZVDate::ElapsedText(0.0, 2), L"0 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(-7500.0, 2), L"-2 hours 5 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(-5.0, 2), L"0 minutes");
    EXPECT_STREQ(ZVDate::ElapsedText(HUGE_VAL, 1), L"");
    EXPECT_STREQ(ZVDate::TimeText(65.0, 1), L"1:05");
    EXPECT_STREQ(ZVDate::TimeText(3723.0, 1), L"1:02:03");
    EXPECT_STREQ(ZVDate::TimeText(5.0, 0), L"0:00:05");
    EXPECT_STREQ(ZVDate::TimeText(7200.0, 2), L"02:00:00");
    EXPECT_STREQ(ZVDate::TimeText(3723.0, 2), L"62:03");
    EXPECT_STREQ(ZVDate::TimeText(3723.0, -1), L"62:03");
    EXPECT_STREQ(ZVDate::TimeText(-65.0, 1), L"-1:05");
    EXPECT_STREQ(ZVDate::TimeText(-3723.0, 1), L"-1:02:03");
    EXPECT_STREQ(ZVDate::TimeText(-0.4, 1), L"0:00");
    EXPECT_STREQ(ZVDate::TimeText(65.25, 1, 1), L"1:05.3");
    EXPECT_STREQ(ZVDate::TimeText(3599.96, 1, 1), L"1:00:00.0");
    EXPECT_STREQ(ZVDate::TimeText(1e300, 1, 99), L"2500000000:00:00.000000");
}
}
