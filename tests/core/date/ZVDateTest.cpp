#include "core/date/ZVDate.h"

#include "FakeTools.h"
#include "TimeZone.h"
#include "contracts/IZVDateServices.h"
#include "core/ZVToolsPointer.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDaylightSaving.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <limits>

namespace
{
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Second = 1.0 / 86400.0;
constexpr int64_t SecondsPerDay = 86400;

bool IsSameMoment(const tm& left, const tm& right)
{
    return left.tm_year == right.tm_year && left.tm_mon == right.tm_mon && left.tm_mday == right.tm_mday &&
           left.tm_hour == right.tm_hour && left.tm_min == right.tm_min && left.tm_sec == right.tm_sec &&
           left.tm_wday == right.tm_wday && left.tm_yday == right.tm_yday;
}

// Compares one moment with what the system library makes of it, there and back.
void CompareWithSystem(int64_t seconds)
{
    const time_t time = seconds;
    tm expected {};
    gmtime_r(&time, &expected);
    const double value = ZVDate::FromUnix(seconds);
    ASSERT_TRUE(IsSameMoment(ZVBrokenDownTime(ZVDate::ToFields(value)), expected)) << seconds;
    ASSERT_EQ(ZVDate::ToUnix(value), seconds);
    // Two digits mean another year.
    if (expected.tm_year + 1900 > 99)
    {
        const double fromFields = ZVDate::FromFields(expected.tm_year + 1900, expected.tm_mon + 1, expected.tm_mday,
                                                     expected.tm_hour, expected.tm_min, expected.tm_sec);
        ASSERT_EQ(ZVDate::ToUnix(fromFields), seconds);
    }
}

TEST(ZVDate, AgreesWithTheSystemOnEachDayAndAtTheBoundariesOfEachYear)
{
    const auto noon = [](int year, int month, int day)
    {
        tm fields {};
        fields.tm_year = year - 1900;
        fields.tm_mon = month - 1;
        fields.tm_mday = day;
        fields.tm_hour = 12;
        return timegm(&fields);
    };
    for (int64_t time = noon(1900, 1, 1); time <= noon(2100, 12, 31); time += SecondsPerDay)
        for (const int64_t second : {-SecondsPerDay / 2, int64_t {0}, SecondsPerDay / 2 - 1})
            ASSERT_NO_FATAL_FAILURE(CompareWithSystem(time + second));
    for (int year = 1; year <= 9999; ++year)
        for (const int64_t time : {noon(year, 1, 1), noon(year, 2, 28), noon(year, 3, 1), noon(year, 12, 31)})
            for (const int64_t second : {-SecondsPerDay / 2, SecondsPerDay / 2 - 1})
                ASSERT_NO_FATAL_FAILURE(CompareWithSystem(time + second));
}

TEST(ZVDate, IsMadeFromFields)
{
    // clang-format off
    const struct
    {
        const char* Name;
        int32_t Fields[6];
        double Value;
    } rows[] = {
        {"the first day of 1900",           {1900, 1, 1, 0, 0, 0},     2.0            },
        {"six in the morning",              {1970, 1, 2, 6, 0, 0},     25570.25       },
        {"below the pivot",                 {25, 1, 1, 0, 0, 0},       45658.0        }, // 55 years and 14 leap days after 1970
        {"the pivot",                       {26, 1, 1, 0, 0, 0},       9498.0         }, // 26 years and 6 leap days after 1900
        {"the last two-digit year",         {99, 1, 1, 0, 0, 0},       36161.0        },
        {"year 100 as it stands",           {100, 1, 1, 0, 0, 0},      -657434.0      },
        {"year 0 as it stands",             {0, 3, 1, 0, 0, 0},        -693899.0      },
        {"a day that February has not got", {2023, 2, 30, 0, 0, 0},    44987.0        }, // 2023-03-02
        {"the day with the number 0",       {1899, 12, 30, 0, 0, 0},   ZVDate::DayMark},
        {"beyond the last year",            {10000, 1, 1, 0, 0, 0},    0.0            },
        {"beyond the first year",           {-10000, 12, 31, 0, 0, 0}, 0.0            },
        {"month 0",  {2020, 0, 1, 0, 0, 0}, 0.0}, {"month 13",  {2020, 13, 1, 0, 0, 0}, 0.0},
        {"day 0",    {2020, 1, 0, 0, 0, 0}, 0.0}, {"day 32",    {2020, 1, 32, 0, 0, 0}, 0.0},
        {"hour 24",  {2020, 1, 1, 24, 0, 0}, 0.0}, {"minute 60", {2020, 1, 1, 0, 60, 0}, 0.0},
        {"second 60", {2020, 1, 1, 0, 0, 60}, 0.0},
    };
    // clang-format on
    for (const auto& row : rows)
        EXPECT_EQ(ZVDate::FromFields(row.Fields[0], row.Fields[1], row.Fields[2], row.Fields[3], row.Fields[4], row.Fields[5]),
                  row.Value)
            << row.Name;
}

TEST(ZVDate, RoundsItsTime)
{
    constexpr double Day = 45418.0;  // 2024-05-06, a Monday
    // clang-format off
    const struct
    {
        const char* Name;
        double Value;
        bool RoundSeconds;
        int32_t Expected[6];  // day, hour, minute, second, day of the week and of the year
    } rows[] = {
        {"half a second is cut",                 Day + 1.5 * Second,       false, {6, 0, 0, 1, 1, 126}   },
        {"half a second is rounded",             Day + 1.5 * Second,       true,  {6, 0, 0, 2, 1, 126}   },
        {"a hair below a second",                Day + Second - 1e-9,      false, {6, 0, 0, 1, 1, 126}   },
        {"rounded into the next day",            Day + 86399.6 * Second,   true,  {7, 0, 0, 0, 2, 127}   },
        {"cut before the next day",              Day + 86399.6 * Second,   false, {6, 23, 59, 59, 1, 126}},
        {"within the tolerance of the next day", Day + 86399.995 * Second, false, {7, 0, 0, 0, 2, 127}   },
    };
    // clang-format on
    for (const auto& row : rows)
    {
        const ZVDateFields fields = ZVDate::ToFields(row.Value, true, row.RoundSeconds);
        const int32_t actual[] = {fields.Day, fields.Hour, fields.Minute, fields.Second, fields.WeekDay, fields.YearDay};
        EXPECT_TRUE(fields.Valid && std::equal(std::begin(actual), std::end(actual), row.Expected)) << row.Name;
    }
}

TEST(ZVDate, GivesTheFieldsThatAreAskedForAndNoneForNoDate)
{
    const ZVDateFields date = ZVDate::ToFields(2.75, false);
    EXPECT_TRUE(date.Valid && date.Year == 0 && date.Month == 0 && date.Day == 1 && date.Hour == 0 && date.WeekDay == 0);
    const ZVDateFields time = ZVDate::ToFields(2.75, true, false, false);
    EXPECT_TRUE(time.Valid && time.Hour == 18 && time.Day == 0 && time.WeekDay == 0);
    for (const double none : {0.0, NaN, Infinity, -Infinity, 1e300, 12e6, -13e6})
    {
        EXPECT_FALSE(ZVDate::ToFields(none).Valid) << none;
        EXPECT_EQ(ZVDate::ToUnix(none), 0);
        EXPECT_EQ(ZVDate::ToUTC(none), 0.0);
        EXPECT_EQ(ZVDate::MakeDateOnly(none), 0.0);
        EXPECT_EQ(ZVDate::GetPrecision(none), ZVDatePrecision::None);
        EXPECT_FALSE(ZVDate::IsDaylightSaving(none, 0) || ZVDate::IsDaylightSaving(none, 1) || ZVDate::IsSameDay(none, none));
    }
}

TEST(ZVDate, TellsHowMuchIsKnown)
{
    constexpr double NewYear = 45292.0;  // 2024-01-01
    const struct
    {
        const char* Name;
        double Value;
        ZVDatePrecision Precision;
    } rows[] = {
        {"a year",                         NewYear,                       ZVDatePrecision::Year},
        {"a hair below a year",            NewYear - 0.009 * Second,      ZVDatePrecision::Year},
        {"a year with less than a second", NewYear + 0.5 * Second,        ZVDatePrecision::Year},
        {"a real January 1",               NewYear + 0.1 * Second,        ZVDatePrecision::Day },
        {"at the end of the tolerance",    NewYear + 0.109 * Second,      ZVDatePrecision::Day },
        {"behind the tolerance",           NewYear + 0.111 * Second,      ZVDatePrecision::Year},
        {"midnight of January 1",          NewYear + 0.2 * Second,        ZVDatePrecision::Time},
        {"a day",                          NewYear + 1.0,                 ZVDatePrecision::Day },
        {"a day with less than a second",  NewYear + 1.0 + 0.9 * Second,  ZVDatePrecision::Day },
        {"midnight",                       NewYear + 1.0 + 0.2 * Second,  ZVDatePrecision::Time},
        {"the first second",               NewYear + 1.0 + Second + 1e-9, ZVDatePrecision::Time},
        {"the last second",                NewYear - Second,              ZVDatePrecision::Time},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ZVDate::GetPrecision(row.Value), row.Precision) << row.Name;

    for (const double value : {NewYear, NewYear + 0.3, NewYear + 126.0, NewYear + 126.9, 0.0, -0.5, -1e5})
        for (const ZVDatePrecision precision : {ZVDatePrecision::Year, ZVDatePrecision::Day, ZVDatePrecision::Time})
        {
            const double marked = ZVDate::WithPrecision(value, precision);
            EXPECT_EQ(ZVDate::GetPrecision(marked), precision) << value;
            EXPECT_EQ(ZVDate::WithPrecision(marked, precision), marked);
        }
}

TEST(ZVDate, KeepsItsPrecisionInAnotherYear)
{
    const double leapDay = ZVDate::FromFields(2024, 2, 29, 12);
    EXPECT_EQ(ZVDate::WithYear(leapDay, 2023), ZVDate::FromFields(2023, 2, 28, 12));
    EXPECT_EQ(ZVDate::WithYear(leapDay, 2000), ZVDate::FromFields(2000, 2, 29, 12));
    for (const double mark : {0.0, ZVDate::DayMark, ZVDate::MidnightMark, 0.25})
    {
        const double moved = ZVDate::WithYear(45292.0 + mark, 1);
        EXPECT_EQ(ZVDate::YearOf(moved), 1);
        EXPECT_EQ(ZVDate::GetPrecision(moved), ZVDate::GetPrecision(45292.0 + mark)) << mark;
    }
    EXPECT_EQ(ZVDate::WithYear(leapDay, 10000), 0.0);

    EXPECT_EQ(ZVDate::MakeDateOnly(45292.9), 45292.0);
    EXPECT_EQ(ZVDate::MakeDateOnly(0.5), ZVDate::DayMark);
    EXPECT_EQ(ZVDate::MakeDateOnly(-0.5), -1.0);
    EXPECT_TRUE(ZVDate::IsSameDay(45292.0, 45292.99));
    EXPECT_FALSE(ZVDate::IsSameDay(45292.99, 45293.0));
}

TEST(ZVDate, FindsWeekDays)
{
    const auto dayOf = [](double value) { return ZVDate::ToFields(value, false).Day; };
    EXPECT_EQ(dayOf(ZVDate::NthWeekday(2024, 9, 0, 1)), 1) << "a month that begins with it";
    EXPECT_EQ(dayOf(ZVDate::NthWeekday(2024, 3, 0, 2)), 10);
    EXPECT_EQ(dayOf(ZVDate::NthWeekday(2024, 2, 4, 5)), 29);
    EXPECT_EQ(ZVDate::NthWeekday(2023, 2, 4, 5), 0.0) << "there is no fifth";
    EXPECT_EQ(dayOf(ZVDate::LastWeekday(2024, 3, 0)), 31);
    EXPECT_EQ(dayOf(ZVDate::LastWeekday(2024, 10, 0)), 27);
    EXPECT_EQ(dayOf(ZVDate::NthWeekday(1, 1, 6, 1)), 6) << "the year 1";
    for (const double none :
         {ZVDate::NthWeekday(2024, 1, 0, 0), ZVDate::NthWeekday(2024, 1, 7, 1), ZVDate::LastWeekday(2024, 13, 0)})
        EXPECT_EQ(none, 0.0);
}

TEST(ZVDate, ConvertsClocks)
{
    EXPECT_EQ(ZVDate::ToUnix(25569.0), 0);
    EXPECT_EQ(ZVDate::ToUnix(25569.0 - 0.6 * Second), -1);
    EXPECT_EQ(ZVDate::ToUnix(25569.0 + 1.6 * Second), 2);
    EXPECT_EQ(ZVDate::FromUnix(INT64_MAX), 0.0);

    uint64_t fileTime = 7;
    EXPECT_FALSE(ZVDate::ToFileTime(0.0, fileTime));
    EXPECT_EQ(fileTime, 0u);
    EXPECT_FALSE(ZVDate::ToFileTime(-109205.0, fileTime)) << "1601-01-01 itself is 0";
    EXPECT_TRUE(ZVDate::ToFileTime(25569.0, fileTime));
    EXPECT_EQ(fileTime, 116444736000000000u);
    EXPECT_EQ(ZVDate::FromFileTime(fileTime), 25569.0 + ZVDate::MidnightMark);
    EXPECT_EQ(ZVDate::FromFileTime(0), 0.0);
    EXPECT_EQ(ZVDate::FromFileTime(UINT64_MAX), 0.0);

    const auto microseconds = [](double value)
    {
        const timeval time = ZVDate::ToTimeval(value);
        return time.tv_sec * 1'000'000 + time.tv_usec;
    };
    EXPECT_EQ(microseconds(25569.25), 21600'000'000);
    EXPECT_NEAR(static_cast<double>(microseconds(25569.0 + 1.25 * Second)), 1'250'000, 1);
    EXPECT_NEAR(static_cast<double>(microseconds(25569.0 - 0.25 * Second)), -250'000, 1);
    EXPECT_GE(ZVDate::ToTimeval(25569.0 - 0.25 * Second).tv_usec, 0);
    EXPECT_EQ(microseconds(25569.0 + ZVDate::MidnightMark), 0) << "a mark is no time";
    EXPECT_EQ(microseconds(0.0), 0);
}

TEST(ZVDate, ChangesTheZone)
{
    // clang-format off
    const struct
    {
        const char* Zone;
        int32_t Local[5];
        int32_t OffsetMinutes;
        bool IsDaylightSaving;
    } rows[] = {
        {TimeZone::Berlin,  {2024, 1, 15, 12, 0},  60,   false},
        {TimeZone::Berlin,  {2024, 7, 15, 1, 0},   120,  true },
        {TimeZone::Berlin,  {2024, 3, 31, 1, 59},  60,   false},
        {TimeZone::Berlin,  {2024, 3, 31, 3, 0},   120,  true },
        {TimeZone::NewYork, {2024, 3, 10, 3, 0},   -240, true },
        {TimeZone::NewYork, {2024, 12, 31, 22, 0}, -300, false},
        {TimeZone::Sydney,  {2024, 1, 15, 12, 0},  660,  true },
        {"UTC0",            {2024, 1, 15, 0, 0},   0,    false},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(testing::PrintToString(row.Local) + row.Zone);
        const TimeZone zone(row.Zone);
        const double local = ZVDate::FromFields(row.Local[0], row.Local[1], row.Local[2], row.Local[3], row.Local[4], 30);
        const double utc = ZVDate::ToUTC(local);
        EXPECT_NEAR(local - utc, row.OffsetMinutes / 1440.0, ZVDate::Tolerance);
        EXPECT_NEAR(ZVDate::ToLocal(utc), local, ZVDate::Tolerance);
        EXPECT_EQ(ZVDate::IsDaylightSaving(local), row.IsDaylightSaving);
        EXPECT_EQ(ZVDate::ToUnix(local, true), ZVDate::ToUnix(local) - row.OffsetMinutes * 60);
    }
    const TimeZone zone(TimeZone::Berlin);
    EXPECT_EQ(ZVDate::ToUTC(45292.0 + ZVDate::Hour), 45292.0 + ZVDate::MidnightMark) << "it stays a time";
    EXPECT_NEAR(static_cast<double>(ZVDate::ToUnix(ZVDate::Now(), true)), static_cast<double>(time(nullptr)), 2.0);
}

TEST(ZVDate, KnowsDaylightSavingByRules)
{
    constexpr ZVDaylightRule Southern = {
        {10, 0, 1, 2},
        {4,  0, 1, 3}
    };
    // clang-format off
    const struct
    {
        const char* Name;
        int32_t Rule;  // -1 for the southern one
        int32_t Time[4];
        bool Expected;
    } rows[] = {
        {"America, before the start", 1,  {3, 10, 1, 59},  false},
        {"America, start",            1,  {3, 10, 2, 0},   true },
        {"America, before the end",   1,  {11, 3, 0, 59},  true },
        {"America, end",              1,  {11, 3, 1, 0},   false},
        {"Europe, before the start",  2,  {3, 31, 1, 59},  false},
        {"Europe, start",             2,  {3, 31, 2, 0},   true },
        {"Europe, before the end",    2,  {10, 27, 0, 59}, true },
        {"Europe, end",               2,  {10, 27, 1, 0},  false},
        {"south, new year",           -1, {1, 1, 0, 0},    true },
        {"south, before the end",     -1, {4, 7, 2, 59},   true },
        {"south, end",                -1, {4, 7, 3, 0},    false},
        {"south, before the start",   -1, {10, 6, 1, 59},  false},
        {"south, start",              -1, {10, 6, 2, 0},   true },
        {"no rule",                   3,  {7, 1, 0, 0},    false},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        const double value = ZVDate::FromFields(2024, row.Time[0], row.Time[1], row.Time[2], row.Time[3]);
        const bool isSaving =
            row.Rule < 0 ? ZVDate::IsDaylightSaving(value, Southern) : ZVDate::IsDaylightSaving(value, row.Rule);
        EXPECT_EQ(isSaving, row.Expected) << row.Name;
    }
}

struct FakeDates final : IZVDateServices
{
    double Parse(const wchar_t* text, int32_t flags) override
    {
        Seen = ZVFormat(L"%s|%d", text, flags);
        return Result;
    }
    ZVString Seen;
    double Result = 0.0;
};

struct ToolsWithDates final : FakeTools
{
    IZVDateServices* GetDateServices(int32_t number) override { return number == 1 ? Dates : nullptr; }
    FakeDates* Dates = nullptr;
};

TEST(ZVDate, IsParsedByTheToolsLibrary)
{
    double value = 5.0;
    EXPECT_FALSE(ZVDate::Parse(L"2024", 0, value)) << "there is no library";
    EXPECT_EQ(value, 0.0);

    ToolsWithDates tools;
    g_pZVTools = &tools;
    EXPECT_FALSE(ZVDate::Parse(L"2024", 0, value)) << "the library has no such service";
    FakeDates dates;
    tools.Dates = &dates;
    EXPECT_FALSE(ZVDate::Parse(L"2024", 1, value));
    EXPECT_STREQ(dates.Seen, L"2024|1");
    dates.Result = 4.5;
    EXPECT_TRUE(ZVDate::Parse(L"x", 0, value));
    EXPECT_EQ(value, 4.5);
    dates.Result = NaN;
    EXPECT_TRUE(ZVDate::Parse(L"x", 0, value));
    EXPECT_FALSE(ZVDate::Parse(L"", 0, value));
    EXPECT_EQ(value, 0.0);
    EXPECT_FALSE(ZVDate::Parse(nullptr, 0, value));
    g_pZVTools = nullptr;
}
}
