#include "core/date/ZVDate.h"

#include "TimeZone.h"
#include "contracts/IZVDateServices.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDaylightSaving.h"
#include "core/string/StringProbe.h"

#include <array>
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

// The cases stand in columns.
// clang-format off

TEST(ZVDate, IsMadeFromFields)
{
    using Fields = std::array<int32_t, 6>;
    ExpectRows<Fields, double>({
        {{25, 1, 1}, 45658.0},  // 55 years and 14 leap days after 1970
        {{26, 1, 1}, 9498.0},   // 26 years and 6 leap days after 1900
        {{99, 1, 1}, 36161.0}, {{100, 1, 1}, -657434.0}, {{0, 3, 1}, -693899.0}, {{2023, 2, 30}, 44987.0},  // 2023-03-02
        {{1899, 12, 30}, ZVDate::DayMark}, {{10000, 1, 1}, 0.0}, {{-10000, 12, 31}, 0.0}, {{2020, 0, 1}, 0.0},
        {{2020, 13, 1}, 0.0}, {{2020, 1, 0}, 0.0}, {{2020, 1, 32}, 0.0}, {{2020, 1, 1, 24}, 0.0}, {{2020, 1, 1, 0, 60}, 0.0},
        {{2020, 1, 1, 0, 0, 60}, 0.0},
    }, [](const Fields& f) { return ZVDate::FromFields(f[0], f[1], f[2], f[3], f[4], f[5]); });
}

TEST(ZVDate, RoundsItsTime)
{
    // Day, time, day of the week and of the year, so many seconds into 2024-05-06, a Monday.
    const auto split = [](double seconds, bool rounds)
    {
        const ZVDateFields fields = ZVDate::ToFields(45418.0 + seconds / 86400.0, true, rounds);
        return ZVFormat(L"%d %d:%d:%d %d %d", fields.Day, fields.Hour, fields.Minute, fields.Second, fields.WeekDay,
                        fields.YearDay);
    };
    ExpectTexts({
        {split(1.5, false), L"6 0:0:1 1 126"}, {split(1.5, true), L"6 0:0:2 1 126"}, {split(1 - 1e-4, false), L"6 0:0:1 1 126"},
        {split(86399.6, false), L"6 23:59:59 1 126"}, {split(86399.6, true), L"7 0:0:0 2 127"},
        {split(86399.995, false), L"7 0:0:0 2 127"},  // within the tolerance of the next day
    });
}

TEST(ZVDate, GivesTheFieldsThatAreAskedForAndNoneForNoDate)
{
    const ZVDateFields date = ZVDate::ToFields(2.75, false), time = ZVDate::ToFields(2.75, true, false, false);
    EXPECT_TRUE(date.Valid && date.Year == 0 && date.Month == 0 && date.Day == 1 && date.Hour == 0 && date.WeekDay == 0);
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
    const auto precisionAt = [](double seconds) { return ZVDate::GetPrecision(NewYear + seconds / 86400.0); };
    ExpectRows<double, ZVDatePrecision>({
        {0.0, Year}, {-0.009, Year}, {0.5, Year}, {0.1, Day}, {0.109, Day}, {0.111, Year}, {0.2, Time}, {-1.0, Time},
        {86400.9, Day}, {86400.2, Time}, {86401.0001, Time},
    }, precisionAt);
    for (const double value : {NewYear, NewYear + 0.3, NewYear + 126.9, 0.0, -0.5})
        for (const ZVDatePrecision precision : {Year, Day, Time})
        {
            const double marked = ZVDate::WithPrecision(value, precision);
            EXPECT_TRUE(ZVDate::GetPrecision(marked) == precision && ZVDate::WithPrecision(marked, precision) == marked) << value;
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
        const double value = 45292.0 + mark, moved = ZVDate::WithYear(value, 1);
        EXPECT_TRUE(ZVDate::YearOf(moved) == 1 && ZVDate::GetPrecision(moved) == ZVDate::GetPrecision(value)) << mark;
    }
    ExpectRows<double, double>({{45292.9, 45292.0}, {0.5, ZVDate::DayMark}, {-0.5, -1.0}}, ZVDate::MakeDateOnly);
    EXPECT_TRUE(ZVDate::IsSameDay(45292.0, 45292.99) && !ZVDate::IsSameDay(45292.99, 45293.0));
}

TEST(ZVDate, FindsWeekDays)
{
    // 0 where there is none, which is no day of any month.
    const auto nth = [](int32_t year, int32_t month, int32_t weekday, int32_t n)
    { return ZVDate::ToFields(ZVDate::NthWeekday(year, month, weekday, n), false).Day; };
    const auto last = [](int32_t month) { return ZVDate::ToFields(ZVDate::LastWeekday(2024, month, 0), false).Day; };
    ExpectNumbers({
        {nth(2024, 9, 0, 1), 1}, {nth(1, 1, 6, 1), 6}, {nth(2024, 2, 4, 5), 29}, {nth(2023, 2, 4, 5), 0},
        {nth(2024, 1, 0, 0), 0}, {nth(2024, 1, 7, 1), 0}, {last(3), 31}, {last(10), 27}, {last(13), 0},
    });
}

TEST(ZVDate, ConvertsClocks)
{
    EXPECT_TRUE(ZVDate::ToUnix(25569.0 - 0.6 * Second) == -1 && ZVDate::ToUnix(25569.0 + 1.6 * Second) == 2);
    uint64_t fileTime = 7;
    EXPECT_TRUE(!ZVDate::ToFileTime(0.0, fileTime) && fileTime == 0);
    EXPECT_FALSE(ZVDate::ToFileTime(-109205.0, fileTime)) << "1601-01-01 itself is 0";
    EXPECT_TRUE(ZVDate::ToFileTime(25569.0, fileTime) && fileTime == 116444736000000000);
    EXPECT_EQ(ZVDate::FromFileTime(fileTime), 25569.0 + ZVDate::MidnightMark);
    EXPECT_TRUE(ZVDate::FromFileTime(0) == 0.0 && ZVDate::FromFileTime(UINT64_MAX) == 0.0 && ZVDate::FromUnix(INT64_MAX) == 0.0);
    // A mark is no time.
    const std::pair<double, int32_t> times[] = {{25569.0 + 1.25 * Second, 1'250'000}, {25569.0 - 0.25 * Second, -250'000},
                                                {25569.0 + ZVDate::MidnightMark, 0}, {0.0, 0}};
    for (const auto& [value, microseconds] : times)
    {
        const timeval time = ZVDate::ToTimeval(value);
        EXPECT_TRUE(time.tv_usec >= 0 && time.tv_usec < 1'000'000);
        EXPECT_NEAR(static_cast<double>(time.tv_sec * 1'000'000 + time.tv_usec), microseconds, microseconds == 0 ? 0 : 1);
    }
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
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 7, 15, 1, 0, 30), 120, true);
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 3, 31, 1, 59, 30), 60, false);
    ExpectOffset(TimeZone::Berlin, ZVDate::FromFields(2024, 3, 31, 3), 120, true);
    ExpectOffset(TimeZone::NewYork, ZVDate::FromFields(2024, 12, 31, 22), -300, false);
    ExpectOffset(TimeZone::Sydney, ZVDate::FromFields(2024, 1, 15, 12), 660, true);
    const TimeZone zone(TimeZone::Berlin);
    EXPECT_EQ(ZVDate::ToUTC(45292.0 + ZVDate::Hour), 45292.0 + ZVDate::MidnightMark) << "it stays a time";
    EXPECT_NEAR(static_cast<double>(ZVDate::ToUnix(ZVDate::Now(), true)), static_cast<double>(time(nullptr)), 2.0);
}

// Expects that daylight saving by a rule begins and ends in 2024 at these hours.
template <class Rule>
void ExpectBounds(const Rule& rule, double start, double end)
{
    EXPECT_TRUE(!ZVDate::IsDaylightSaving(start - Second, rule) && ZVDate::IsDaylightSaving(start, rule));
    EXPECT_TRUE(ZVDate::IsDaylightSaving(end - Second, rule) && !ZVDate::IsDaylightSaving(end, rule));
}

TEST(ZVDate, KnowsDaylightSavingByRules)
{
    ExpectBounds(1, ZVDate::FromFields(2024, 3, 10, 2), ZVDate::FromFields(2024, 11, 3, 1));
    ExpectBounds(2, ZVDate::FromFields(2024, 3, 31, 2), ZVDate::FromFields(2024, 10, 27, 1));
    constexpr ZVDaylightRule Southern {{10, 0, 1, 2}, {4, 0, 1, 3}};
    ExpectBounds(Southern, ZVDate::FromFields(2024, 10, 6, 2), ZVDate::FromFields(2024, 4, 7, 3));
    constexpr double July = 45474.5;  // 2024-07-01
    EXPECT_FALSE(ZVDate::IsDaylightSaving(July, 3)) << "no rule";
    EXPECT_FALSE(ZVDate::IsDaylightSaving(July + 10000 * 365.2425, 1)) << "a year without bounds";
}

struct ToolsWithDates final : FakeTools, IZVDateServices
{
    IZVDateServices* GetDateServices(int32_t number) override { return number == 1 && IsThere ? this : nullptr; }
    double Parse(const wchar_t* text, int32_t flags) override { return flags == 1 && *text != L'-' ? Result : 0.0; }
    bool IsThere = false;
    double Result = 4.5;
};

TEST(ZVDate, IsParsedByTheToolsLibrary)
{
    double value = 5.0;
    EXPECT_TRUE(!ZVDate::Parse(L"x", 1, value) && value == 0.0) << "there is no library";
    ToolsWithDates tools;
    g_pZVTools = &tools;
    EXPECT_FALSE(ZVDate::Parse(L"x", 1, value)) << "the library has no such service";
    tools.IsThere = true;
    EXPECT_TRUE(ZVDate::Parse(L"x", 1, value) && value == 4.5);
    for (const wchar_t* text : {L"-", L"", static_cast<const wchar_t*>(nullptr)})
        EXPECT_FALSE(ZVDate::Parse(text, 1, value));
    EXPECT_TRUE(!ZVDate::Parse(L"x", 0, value) && value == 0.0);
    tools.Result = NAN;
    EXPECT_TRUE(ZVDate::Parse(L"x", 1, value));
    g_pZVTools = nullptr;
}
}
