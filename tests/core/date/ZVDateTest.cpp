#include "core/date/ZVDate.h"

#include "TimeZone.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDaylightSaving.h"
#include "core/string/StringProbe.h"

#include <array>
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

// True at the start and the end of years and Februaries.
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
            if (year <= 99)
                continue;  // FromFields takes it for a later year
            const double fromFields = ZVDate::FromFields(year, expected.tm_mon + 1, expected.tm_mday, expected.tm_hour,
                                                         expected.tm_min, expected.tm_sec);
            ASSERT_EQ(ZVDate::ToUnix(fromFields), seconds);
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
    // Day, time, day of the week and day of the year, that many seconds after the start of 2024-05-06, a Monday.
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

TEST(ZVDate, ComparesDays)
{
    // With 2024-05-06, a Monday: in the evening, a day, a month and a year later.
    ExpectRows<double, bool>({{45418.99, true}, {45419.0, false}, {45449.0, false}, {45783.0, false}, {0.0, false}},
                             [](double other) { return ZVDate::IsSameDay(45418.0, other); });
}

TEST(ZVDate, ConvertsClocks)
{
    EXPECT_EQ(ZVDate::ToUnix(25569.0 - 0.6 * Second), -1);
    EXPECT_EQ(ZVDate::ToUnix(25569.0 + 1.6 * Second), 2);
    uint64_t fileTime = 7;
    EXPECT_FALSE(ZVDate::ToFileTime(-109205.0, fileTime)) << "1601-01-01 itself is 0";
    EXPECT_TRUE(ZVDate::ToFileTime(25569.0, fileTime));
    EXPECT_EQ(fileTime, 116444736000000000u);
    EXPECT_EQ(ZVDate::FromFileTime(fileTime), 25569.0 + ZVDate::MidnightMark);
    const timeval time = ZVDate::ToTimeval(25569.0 - 0.25 * Second);
    EXPECT_EQ(time.tv_sec, -1);
    EXPECT_NEAR(static_cast<double>(time.tv_usec), 750'000.0, 1.0);
    EXPECT_EQ(ZVDate::ToTimeval(25569.0 + ZVDate::MidnightMark).tv_usec, 0) << "a mark is not a time";
}

// Expects that a local time of 2024 in a zone is that many minutes ahead of UTC, and that converting it back gives the same time.
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
    ExpectOffset(TimeZone::NewYork, ZVDate::FromFields(2024, 12, 31, 22), -300, false);
    const TimeZone zone(TimeZone::Berlin);
    EXPECT_EQ(ZVDate::ToUTC(45292.0 + ZVDate::Hour), 45292.0 + ZVDate::MidnightMark) << "the result still has a time";
    EXPECT_NEAR(static_cast<double>(ZVDate::ToUnix(ZVDate::Now(), true)), static_cast<double>(time(nullptr)), 2.0);
}

TEST(ZVDate, KnowsDaylightSavingByRules)
{
    static constexpr ZVDaylightRule Southern {{10, 0, 1, 2}, {4, 0, 1, 3}};
    ExpectRows<double, bool>({
        {ZVDate::FromFields(2024, 10, 6, 2) - Second, false}, {ZVDate::FromFields(2024, 10, 6, 2), true},
        {ZVDate::FromFields(2024, 4, 7, 3) - Second, true}, {ZVDate::FromFields(2024, 4, 7, 3), false},
    }, [](double value) { return ZVDate::IsDaylightSaving(value, Southern); });
    // The first and the last second by the rules 1 and 2.
    ExpectRows<std::pair<int32_t, double>, bool>({
        {{1, ZVDate::FromFields(2024, 3, 10, 2) - Second}, false}, {{1, ZVDate::FromFields(2024, 3, 10, 2)}, true},
        {{1, ZVDate::FromFields(2024, 11, 3, 1) - Second}, true}, {{1, ZVDate::FromFields(2024, 11, 3, 1)}, false},
        {{2, ZVDate::FromFields(2024, 3, 31, 2) - Second}, false}, {{2, ZVDate::FromFields(2024, 3, 31, 2)}, true},
        {{2, ZVDate::FromFields(2024, 10, 27, 1) - Second}, true}, {{2, ZVDate::FromFields(2024, 10, 27, 1)}, false},
        {{3, 45474.5}, false}, {{1, 45474.5 + 10000 * 365.2425}, false},  // no rule, and a year without bounds
    }, [](const auto& ruleAndValue) { return ZVDate::IsDaylightSaving(ruleAndValue.second, ruleAndValue.first); });
}
}
