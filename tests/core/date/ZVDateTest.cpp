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
#include <string>

namespace
{
constexpr double Second = 1.0 / 86400.0;
constexpr int64_t SecondsPerDay = 86400;

std::string ToText(const tm& time)
{
    char text[64];
    return std::string(text, strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %w %j", &time));
}

// Where years and Februaries begin and end.
bool IsBoundary(const tm& time)
{
    return time.tm_yday == 0 || time.tm_yday >= 364 || (time.tm_mon == 1 && time.tm_mday >= 28) || time.tm_yday == 31 + 28;
}

TEST(ZVDate, AgreesWithTheSystemOnEachDayOfTwoCenturiesAndAtTheBoundariesOfAllYears)
{
    constexpr int64_t FirstDay = -719162;  // 0001-01-01
    constexpr int64_t LastDay = 2932896;   // 9999-12-31
    for (int64_t day = FirstDay; day <= LastDay; ++day)
        for (const int64_t seconds : {day * SecondsPerDay, (day + 1) * SecondsPerDay - 1})
        {
            const time_t time = seconds;
            tm expected {};
            gmtime_r(&time, &expected);
            const int year = expected.tm_year + 1900;
            if (!IsBoundary(expected) && (year < 1900 || year > 2100))
                continue;
            const double value = ZVDate::FromUnix(seconds);
            ASSERT_EQ(ToText(ZVBrokenDownTime(ZVDate::ToFields(value))), ToText(expected));
            ASSERT_EQ(ZVDate::ToUnix(value), seconds);
            // Two digits mean another year.
            const double fromFields = ZVDate::FromFields(year, expected.tm_mon + 1, expected.tm_mday, expected.tm_hour,
                                                         expected.tm_min, expected.tm_sec);
            ASSERT_TRUE(year <= 99 || ZVDate::ToUnix(fromFields) == seconds) << seconds;
        }
}

TEST(ZVDate, IsMadeFromFields)
{
    EXPECT_EQ(ZVDate::FromFields(1900, 1, 1), 2.0);
    EXPECT_EQ(ZVDate::FromFields(25, 1, 1), 45658.0) << "55 years and 14 leap days after 1970";
    EXPECT_EQ(ZVDate::FromFields(26, 1, 1), 9498.0) << "26 years and 6 leap days after 1900";
    EXPECT_EQ(ZVDate::FromFields(99, 1, 1), 36161.0);
    EXPECT_EQ(ZVDate::FromFields(100, 1, 1), -657434.0);
    EXPECT_EQ(ZVDate::FromFields(0, 3, 1), -693899.0);
    EXPECT_EQ(ZVDate::FromFields(2023, 2, 30), 44987.0) << "2023-03-02";
    EXPECT_EQ(ZVDate::FromFields(1899, 12, 30), ZVDate::DayMark) << "the day with the number 0";
    EXPECT_EQ(ZVDate::FromFields(10000, 1, 1), 0.0);
    EXPECT_EQ(ZVDate::FromFields(-10000, 12, 31), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 0, 1), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 13, 1), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 1, 0), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 1, 32), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 1, 1, 24), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 1, 1, 0, 60), 0.0);
    EXPECT_EQ(ZVDate::FromFields(2020, 1, 1, 0, 0, 60), 0.0);
}

TEST(ZVDate, RoundsItsTime)
{
    // Day, time, day of the week and of the year, so many seconds into 2024-05-06, a Monday.
    const auto split = [](double seconds, bool rounds)
    {
        const ZVDateFields fields = ZVDate::ToFields(45418.0 + seconds * Second, true, rounds);
        return ZVFormat(L"%d %d:%d:%d %d %d", fields.Day, fields.Hour, fields.Minute, fields.Second, fields.WeekDay,
                        fields.YearDay);
    };
    EXPECT_STREQ(split(1.5, false), L"6 0:0:1 1 126");
    EXPECT_STREQ(split(1.5, true), L"6 0:0:2 1 126");
    EXPECT_STREQ(split(1.0 - 1e-4, false), L"6 0:0:1 1 126");
    EXPECT_STREQ(split(86399.6, false), L"6 23:59:59 1 126");
    EXPECT_STREQ(split(86399.6, true), L"7 0:0:0 2 127");
    EXPECT_STREQ(split(86399.995, false), L"7 0:0:0 2 127") << "within the tolerance of the next day";
}

TEST(ZVDate, GivesTheFieldsThatAreAskedForAndNoneForNoDate)
{
    const ZVDateFields date = ZVDate::ToFields(2.75, false);
    EXPECT_TRUE(date.Valid && date.Year == 0 && date.Month == 0 && date.Day == 1 && date.Hour == 0 && date.WeekDay == 0);
    const ZVDateFields time = ZVDate::ToFields(2.75, true, false, false);
    EXPECT_TRUE(time.Valid && time.Hour == 18 && time.Day == 0 && time.WeekDay == 0);
    for (const double none : {0.0, std::nan(""), HUGE_VAL, -HUGE_VAL, 12e6, -13e6})
    {
        EXPECT_FALSE(ZVDate::ToFields(none).Valid) << none;
        EXPECT_TRUE(ZVDate::ToUnix(none) == 0 && ZVDate::ToUTC(none) == 0.0 && ZVDate::MakeDateOnly(none) == 0.0);
        EXPECT_EQ(ZVDate::GetPrecision(none), ZVDatePrecision::None);
        EXPECT_FALSE(ZVDate::IsDaylightSaving(none, 0) || ZVDate::IsDaylightSaving(none, 1) || ZVDate::IsSameDay(none, none));
    }
}

TEST(ZVDate, TellsHowMuchIsKnown)
{
    using enum ZVDatePrecision;
    constexpr double NewYear = 45292.0;  // 2024-01-01
    const auto precisionAt = [](double day, double seconds) { return ZVDate::GetPrecision(day + seconds * Second); };
    EXPECT_EQ(precisionAt(NewYear, 0.0), Year);
    EXPECT_EQ(precisionAt(NewYear, -0.009), Year);
    EXPECT_EQ(precisionAt(NewYear, 0.5), Year);
    EXPECT_EQ(precisionAt(NewYear, 0.1), Day);
    EXPECT_EQ(precisionAt(NewYear, 0.109), Day);
    EXPECT_EQ(precisionAt(NewYear, 0.111), Year);
    EXPECT_EQ(precisionAt(NewYear, 0.2), Time);
    EXPECT_EQ(precisionAt(NewYear, -1.0), Time);
    EXPECT_EQ(precisionAt(NewYear + 1.0, 0.9), Day);
    EXPECT_EQ(precisionAt(NewYear + 1.0, 0.2), Time);
    EXPECT_EQ(precisionAt(NewYear + 1.0, 1.0001), Time);
    for (const double value : {NewYear, NewYear + 0.3, NewYear + 126.0, NewYear + 126.9, 0.0, -0.5, -1e5})
        for (const ZVDatePrecision precision : {Year, Day, Time})
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
    EXPECT_EQ(ZVDate::WithYear(leapDay, 10000), 0.0);
    for (const double mark : {0.0, ZVDate::DayMark, ZVDate::MidnightMark, 0.25})
    {
        const double moved = ZVDate::WithYear(45292.0 + mark, 1);
        EXPECT_EQ(ZVDate::YearOf(moved), 1);
        EXPECT_EQ(ZVDate::GetPrecision(moved), ZVDate::GetPrecision(45292.0 + mark)) << mark;
    }

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
    EXPECT_EQ(dayOf(ZVDate::NthWeekday(1, 1, 6, 1)), 6) << "the year 1";
    EXPECT_EQ(dayOf(ZVDate::NthWeekday(2024, 2, 4, 5)), 29);
    EXPECT_EQ(ZVDate::NthWeekday(2023, 2, 4, 5), 0.0) << "there is no fifth";
    EXPECT_EQ(dayOf(ZVDate::LastWeekday(2024, 3, 0)), 31);
    EXPECT_EQ(dayOf(ZVDate::LastWeekday(2024, 10, 0)), 27);
    EXPECT_EQ(ZVDate::NthWeekday(2024, 1, 0, 0), 0.0);
    EXPECT_EQ(ZVDate::NthWeekday(2024, 1, 7, 1), 0.0);
    EXPECT_EQ(ZVDate::LastWeekday(2024, 13, 0), 0.0);
}

TEST(ZVDate, ConvertsClocks)
{
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
        EXPECT_TRUE(time.tv_usec >= 0 && time.tv_usec < 1'000'000);
        return static_cast<double>(time.tv_sec * 1'000'000 + time.tv_usec);
    };
    EXPECT_NEAR(microseconds(25569.0 + 1.25 * Second), 1'250'000, 1);
    EXPECT_NEAR(microseconds(25569.0 - 0.25 * Second), -250'000, 1);
    EXPECT_EQ(microseconds(25569.0 + ZVDate::MidnightMark), 0) << "a mark is no time";
    EXPECT_EQ(microseconds(0.0), 0);
}

// Expects that a local time of 2024 in a zone is so many minutes ahead of UTC, and that it is found back from there.
void ExpectOffset(const char* rule, double local, int32_t minutes, bool isDaylightSaving)
{
    SCOPED_TRACE(testing::Message() << rule << " " << local);
    const TimeZone zone(rule);
    const double utc = ZVDate::ToUTC(local);
    EXPECT_NEAR(local - utc, minutes / 1440.0, ZVDate::Tolerance);
    EXPECT_NEAR(ZVDate::ToLocal(utc), local, ZVDate::Tolerance);
    EXPECT_EQ(ZVDate::IsDaylightSaving(local), isDaylightSaving);
    EXPECT_EQ(ZVDate::ToUnix(local, true), ZVDate::ToUnix(local) - minutes * 60);
}

TEST(ZVDate, ChangesTheZone)
{
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 1, 15, 12), 60, false);
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 7, 15, 1, 0, 30), 120, true);
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 3, 31, 1, 59, 30), 60, false);
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 3, 31, 3), 120, true);
    ExpectOffset(TimeZone::NewYork, ZVDate::FromFields(2024, 12, 31, 22), -300, false);
    ExpectOffset(TimeZone::Sydney, ZVDate::FromFields(2024, 1, 15, 12), 660, true);
    ExpectOffset("UTC0", ZVDate::FromFields(2024, 1, 15, 0, 0, 30), 0, false);
    const TimeZone zone(TimeZone::Berlin);
    EXPECT_EQ(ZVDate::ToUTC(45292.0 + ZVDate::Hour), 45292.0 + ZVDate::MidnightMark) << "it stays a time";
    EXPECT_NEAR(static_cast<double>(ZVDate::ToUnix(ZVDate::Now(), true)), static_cast<double>(time(nullptr)), 2.0);
}

// Expects that daylight saving by a rule begins and ends in 2024 at these hours.
template <class Rule>
void ExpectBounds(const Rule& rule, double start, double end)
{
    EXPECT_FALSE(ZVDate::IsDaylightSaving(start - Second, rule));
    EXPECT_TRUE(ZVDate::IsDaylightSaving(start, rule));
    EXPECT_TRUE(ZVDate::IsDaylightSaving(end - Second, rule));
    EXPECT_FALSE(ZVDate::IsDaylightSaving(end, rule));
}

TEST(ZVDate, KnowsDaylightSavingByRules)
{
    ExpectBounds(1, ZVDate::FromFields(2024, 3, 10, 2), ZVDate::FromFields(2024, 11, 3, 1));
    ExpectBounds(2, ZVDate::FromFields(2024, 3, 31, 2), ZVDate::FromFields(2024, 10, 27, 1));
    const ZVDaylightRule southern {
        {10, 0, 1, 2},
        {4,  0, 1, 3}
    };
    ExpectBounds(southern, ZVDate::FromFields(2024, 10, 6, 2), ZVDate::FromFields(2024, 4, 7, 3));
    constexpr double July = 45474.5;  // 2024-07-01
    EXPECT_FALSE(ZVDate::IsDaylightSaving(July, 3)) << "no rule";
    EXPECT_FALSE(ZVDate::IsDaylightSaving(July + 10000 * 365.2425, 1)) << "a year without bounds";
}

struct ToolsWithDates final : FakeTools, IZVDateServices
{
    IZVDateServices* GetDateServices(int32_t number) override { return number == 1 && IsThere ? this : nullptr; }
    double Parse(const wchar_t* text, int32_t flags) override
    {
        Seen = ZVFormat(L"%s|%d", text, flags);
        return Result;
    }
    bool IsThere = false;
    ZVString Seen;
    double Result = 0.0;
};

TEST(ZVDate, IsParsedByTheToolsLibrary)
{
    double value = 5.0;
    EXPECT_FALSE(ZVDate::Parse(L"2024", 0, value)) << "there is no library";
    EXPECT_EQ(value, 0.0);

    ToolsWithDates tools;
    g_pZVTools = &tools;
    EXPECT_FALSE(ZVDate::Parse(L"2024", 0, value)) << "the library has no such service";
    tools.IsThere = true;
    EXPECT_FALSE(ZVDate::Parse(L"2024", 1, value));
    EXPECT_STREQ(tools.Seen, L"2024|1");
    tools.Result = 4.5;
    EXPECT_TRUE(ZVDate::Parse(L"x", 0, value));
    EXPECT_EQ(value, 4.5);
    EXPECT_FALSE(ZVDate::Parse(L"", 0, value));
    EXPECT_FALSE(ZVDate::Parse(nullptr, 0, value));
    EXPECT_EQ(value, 0.0);
    tools.Result = NAN;
    EXPECT_TRUE(ZVDate::Parse(L"x", 0, value));
    g_pZVTools = nullptr;
}
}
