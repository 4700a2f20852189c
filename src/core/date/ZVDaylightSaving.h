#pragma once

#include <cstdint>

// A moment of the year at which clocks are changed: a week day of a month and hours of that day.
struct ZVDaylightBound
{
    // Stands for the last such week day.
    static constexpr int32_t Last = 0;

    int32_t Month;    // from 1
    int32_t Weekday;  // 0 is Sunday
    int32_t Nth;      // from 1, or Last
    int32_t Hours;
};

// A rule of daylight saving. A start later in the year than the end is a southern summer, which lasts over the turn of the year.
struct ZVDaylightRule
{
    ZVDaylightBound Start;
    ZVDaylightBound End;  // the first moment that is not in it
};

namespace ZVDate
{
// The numbers of the rules.
inline constexpr int32_t SystemDaylightRule = 0;         // what the system library knows of the local time zone
inline constexpr int32_t NorthAmericanDaylightRule = 1;  // second Sunday of March to first Sunday of November, since 2007
inline constexpr int32_t EuropeanDaylightRule = 2;       // last Sunday of March to last Sunday of October, since 1996

// True when a local time falls in daylight saving by the rule of a number, or by one of the caller's. False for no date, for a
// number that is no rule, and by a rule in a year that lacks one of its bounds, as a year beyond -9999 to 9999 does.
bool IsDaylightSaving(double value, int32_t rule = SystemDaylightRule);
bool IsDaylightSaving(double value, const ZVDaylightRule& rule);
}
