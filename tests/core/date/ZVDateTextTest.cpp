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
constexpr double January = Year + ZVDate::DayMark;       // 2024-01-01
constexpr double Day = 45418.0;                          // 2024-05-06, a Monday
constexpr double Midnight = Day + ZVDate::MidnightMark;  // 2024-05-06 00:00:00
constexpr double Noon = Day + 0.5;
constexpr double Evening = Day + (19 * 3600 + 8) / 86400.0;  // 19:00:08
constexpr double Early = -693593.0 + 0.5;                    // 0001-01-01 12:00:00, a Monday

struct Row
{
    const char* Name;
    ZVString Actual;
    const wchar_t* Expected;
};

void ExpectTexts(std::initializer_list<Row> rows)
{
    for (const Row& row : rows)
        EXPECT_STREQ(row.Actual, row.Expected) << row.Name;
}

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
    // clang-format off
    ExpectTexts({
        {"ISO", ZVDate::ToISO(Evening), L"2024-05-06T19:00:08"},
        {"ISO with zone", ZVDate::ToISO(Evening, true), L"2024-05-06T19:00:08-04:00"},
        {"ISO, day", ZVDate::ToISO(Day, true, true), L"2024-05-06"},
        {"ISO, January 1", ZVDate::ToISO(January, false, true), L"2024-01-01"},
        {"ISO, year", ZVDate::ToISO(Year, true, true), L"2024"},
        {"ISO, midnight", ZVDate::ToISO(Midnight, false, true), L"2024-05-06T00:00:00"},
        {"ISO, year in full", ZVDate::ToISO(Year), L"2024-01-01T00:00:00"},
        {"ISO, early", ZVDate::ToISO(Early, false, true), L"0001-01-01T12:00:00"},
        {"compact", ZVDate::ToCompactUTC(Evening), L"20240506T190008Z"},
        {"RFC 1123", ZVDate::ToRFC1123(Evening), L"Mon, 6 May 2024 19:00:08 GMT"},
        {"RFC 1123, early", ZVDate::ToRFC1123(Early), L"Mon, 1 Jan 1 12:00:00 GMT"},
        {"file name", ZVDate::ToFileNameText(Evening), L"20240506-190008"},
        {"none", ZVDate::ToISO(0.0) + ZVDate::ToCompactUTC(0.0) + ZVDate::ToRFC1123(0.0) + ZVDate::ToFileNameText(0.0), L""},
    });
    // clang-format on
    const TimeZone other(TimeZone::Berlin);
    EXPECT_STREQ(ZVDate::ToISO(Evening, true), L"2024-05-06T19:00:08+02:00");
    const TimeZone none("UTC0");
    EXPECT_STREQ(ZVDate::ToISO(Evening, true), L"2024-05-06T19:00:08Z");
}

TEST(ZVDateText, WritesForPeople)
{
    const double thisYear = ZVDate::WithYear(Evening, ZVDate::YearOf(ZVDate::Now()));
    // clang-format off
    ExpectTexts({
        {"decade", ZVDate::ToDecade(Year + 2000.0), L"2020's"},
        {"decade before the year 0", ZVDate::ToDecade(ZVDate::FromFields(-5, 1, 1)), L"-10's"},
        {"24 hours", ZVDate::ToTimeOfDay(Evening, true), L"19:00:08"},
        {"24 hours without seconds", ZVDate::ToTimeOfDay(Evening, true, ZVDateSeconds::Never), L"19:00"},
        {"24 hours, no seconds there", ZVDate::ToTimeOfDay(Noon, true), L"12:00"},
        {"24 hours, always seconds", ZVDate::ToTimeOfDay(Noon, true, ZVDateSeconds::Always), L"12:00:00"},
        {"12 hours", ZVDate::ToTimeOfDay(Evening, false), L"07:00:08 pm"},
        {"12 hours, midnight", ZVDate::ToTimeOfDay(Midnight, false), L"12:00 am"},
        {"midnight", ZVDate::ToTimeWords(Midnight), L"Midnight"},
        {"noon", ZVDate::ToTimeWords(Noon), L"Noon"},
        {"a second behind noon", ZVDate::ToTimeWords(Noon + 1 / 86400.0), L"12:00:01 pm"},
        {"no time", ZVDate::ToTimeWords(Day) + ZVDate::ToTimeOfDay(Year, true), L""},
        {"short date", ZVDate::ToShortDate(Day), L"May 6 2024"},
        {"short date of this year", ZVDate::ToShortDate(thisYear), L"May 6"},
        {"short date of a year", ZVDate::ToShortDate(Year), L"2024"},
        {"short date of January 1", ZVDate::ToShortDate(January), L"Jan 1 2024"},
        {"none", ZVDate::ToDecade(0.0) + ZVDate::ToShortDate(0.0) + ZVDate::ToTimeWords(0.0), L""},
    });
    // clang-format on
}

TEST(ZVDateText, FollowsTheLocaleOnlyWhereItIsForPeople)
{
    const Locale german("de_DE.UTF-8");
    if (!german.IsThere)
        GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed";
    const double march = ZVDate::FromFields(2024, 3, 5, 7, 8, 9);  // a Tuesday
    // clang-format off
    ExpectTexts({
        {"RFC 1123", ZVDate::ToRFC1123(march), L"Tue, 5 Mar 2024 07:08:09 GMT"},
        {"month", ZVDate::Format(march, L"month dayname"), L"M\u00e4rz Dienstag"},
        {"English names", ZVDate::Format(march, L"%a %B", ZVDate::EnglishNames), L"Tue March"},
        {"date", ZVDate::Format(march, L"date"), L"05.03.2024"},
        {"12 hours", ZVDate::ToTimeOfDay(march, false), L"07:08:09 am"},
        {"short date", ZVDate::ToShortDate(march, ZVDate::EnglishNames), L"5 Mar 2024"},
    });
    // clang-format on
}

TEST(ZVDateText, WritesByPatterns)
{
    const double now = ZVDate::Now();
    // clang-format off
    ExpectTexts({
        {"words in any case", ZVDate::Format(Evening, L"Year MONTH dayordinal, dayname"), L"2024 May 6th, Monday"},
        {"numbers", ZVDate::Format(Evening, L"hour:minute:second"), L"19:00:08"},
        {"words inside words", ZVDate::Format(Evening, L"xyearx"), L"x2024x"},
        {"forms", ZVDate::Format(Evening, L"filename decade"), L"20240506-190008 2020's"},
        {"date and time", ZVDate::Format(Evening, L"date|time|datetime"), L"05/06/24|19:00:08|05/06/24 19:00:08"},
        {"short ones", ZVDate::Format(Evening, L"shortdate|shorttime|shortdatetime"), L"May 6 2024|19:00|May 6 2024 19:00"},
        {"of a day", ZVDate::Format(Day, L"date|time|datetime|hour|shortdatetime"), L"05/06/24||05/06/24||May 6 2024"},
        {"of a year", ZVDate::Format(Year, L"date|month|dayname|datetime"), L"2024|||2024"},
        {"elapsed", ZVDate::Format(now - 3.0, L"elapsed|elapsedago"), L"3.0 days|3.0 days ago"},
        {"to come", ZVDate::Format(now + 3.0 + 1e-5, L"elapsedago"), L"in 3.0 days"},
        {"quotes", ZVDate::Format(Day, L"\"the year\" year \"a \"\"date\"\"\" \"\""), L"the year 2024 a \"date\" \""},
        {"an open quote", ZVDate::Format(Day, L"\"year"), L"year"},
        {"codes", ZVDate::Format(Evening, L"%Y-%m-%d %H:%M:%S %j %I %p %y %w %U %W %%"),
         L"2024-05-06 19:00:08 127 07 PM 24 1 18 19 %"},
        {"names", ZVDate::Format(Evening, L"%A %a %B %b"), L"Monday Mon May May"},
        {"the locale's", ZVDate::Format(Evening, L"%c|%x|%X"), L"Mon May  6 19:00:08 2024|05/06/24|19:00:08"},
        {"no codes", ZVDate::Format(Day, L"%Q %"), L"%Q %"},
        {"codes alone", ZVDate::Format(Day, L"\"year\" %Y", ZVDate::CodesOnly), L"\"year\" 2024"},
        {"no date", ZVDate::Format(0.0, L"year"), L""},
        {"no pattern", ZVDate::Format(Day, nullptr), L""},
    });
    // clang-format on
}

TEST(ZVSpanText, TellsSpansInWords)
{
    // clang-format off
    ExpectTexts({
        {"years", ZVDate::ElapsedText(31536000.0 * 1.5, 1), L"1.50 years"},
        {"days below a year", ZVDate::ElapsedText(31535999.0, 1), L"365.0 days"},
        {"days", ZVDate::ElapsedText(172800.0, 1), L"2.0 days"},
        {"hours below two days", ZVDate::ElapsedText(172799.0, 0), L"48.0 hours"},
        {"hours", ZVDate::ElapsedText(7200.0, 1), L"2.0 hours"},
        {"minutes below two hours", ZVDate::ElapsedText(7199.0, 1), L"120 minutes"},
        {"a minute", ZVDate::ElapsedText(60.0, 1), L"1 minutes"},
        {"seconds", ZVDate::ElapsedText(59.9, 1), L"59 seconds"},
        {"clock", ZVDate::ElapsedText(86399.0, 0), L"23:59:59"},
        {"no clock", ZVDate::ElapsedText(86400.0, 0), L"24.0 hours"},
        {"another mode", ZVDate::ElapsedText(59.0, 6), L"59 seconds"},
        {"minutes, rounded", ZVDate::ElapsedText(3570.0, 2), L"1 hour"},
        {"minutes, rounded down", ZVDate::ElapsedText(3569.0, 2), L"59 minutes"},
        {"hours and minutes", ZVDate::ElapsedText(7500.0, 2), L"2 hours 5 minutes"},
        {"a decimal of an hour", ZVDate::ElapsedText(7440.0, 3), L"2.1 hours"},
        {"three minutes are no decimal", ZVDate::ElapsedText(7380.0, 3), L"2 hours"},
        {"minutes in hours", ZVDate::ElapsedText(90.0, 3), L"2 minutes"},
        {"few minutes", ZVDate::ElapsedText(3900.0, 4), L"1 hour"},
        {"not few minutes", ZVDate::ElapsedText(3960.0, 4), L"1 hour 6 minutes"},
        {"few minutes without hours", ZVDate::ElapsedText(120.0, 4), L"2 minutes"},
        {"exact", ZVDate::ElapsedText(3719.0, 5), L"1 hour 1 minute"},
        {"exact below an hour", ZVDate::ElapsedText(121.0, 5), L"2 minutes 1 second"},
        {"exact below a minute", ZVDate::ElapsedText(59.0, 5), L"59 seconds"},
        {"nothing", ZVDate::ElapsedText(0.0, 2), L"0 minutes"},
        {"negative", ZVDate::ElapsedText(-7500.0, 2), L"-2 hours 5 minutes"},
        {"negative, nothing left", ZVDate::ElapsedText(-5.0, 2), L"0 minutes"},
        {"infinite", ZVDate::ElapsedText(HUGE_VAL, 1), L""},
    });
    // clang-format on
}

TEST(ZVSpanText, ShowsSpansAsAClock)
{
    // clang-format off
    ExpectTexts({
        {"without hours", ZVDate::TimeText(65.0, 1), L"1:05"},
        {"with hours", ZVDate::TimeText(3723.0, 1), L"1:02:03"},
        {"always hours", ZVDate::TimeText(5.0, 0), L"0:00:05"},
        {"two digits", ZVDate::TimeText(7200.0, 2), L"02:00:00"},
        {"not enough hours", ZVDate::TimeText(3723.0, 2), L"62:03"},
        {"never hours", ZVDate::TimeText(3723.0, -1), L"62:03"},
        {"negative", ZVDate::TimeText(-65.0, 1), L"-1:05"},
        {"negative with hours", ZVDate::TimeText(-3723.0, 1), L"-1:02:03"},
        {"negative, nothing left", ZVDate::TimeText(-0.4, 1), L"0:00"},
        {"decimals", ZVDate::TimeText(65.25, 1, 1), L"1:05.3"},
        {"rounded into the next hour", ZVDate::TimeText(3599.96, 1, 1), L"1:00:00.0"},
        {"huge", ZVDate::TimeText(1e300, 1, 99), L"2500000000:00:00.000000"},
    });
    // clang-format on
}
}
