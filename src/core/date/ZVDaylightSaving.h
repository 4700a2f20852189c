#pragma once

#include <cstdint>

// A moment of the year at which clocks are changed: a week day of a month, and hours after the start of that day.
struct ZVDaylightBound
{
    // As Nth: the last such week day.
    static constexpr int32_t Last = 0;

    int32_t Month;    // from 1
    int32_t Weekday;  // 0 is Sunday
    int32_t Nth;      // from 1, or Last
    int32_t Hours;
};

// A rule of daylight saving. If the start is later in the year than the end, it is a southern summer, which spans the turn of the
// year.
struct ZVDaylightRule
{
    ZVDaylightBound Start;
    ZVDaylightBound End;  // the first moment after it
};

namespace ZVDate
{
// The numbers of the rules.
inline constexpr int32_t SystemDaylightRule = 0;         // what the system library knows about the local time zone
inline constexpr int32_t NorthAmericanDaylightRule = 1;  // second Sunday of March to first Sunday of November, since 2007
inline constexpr int32_t EuropeanDaylightRule = 2;       // last Sunday of March to last Sunday of October, since 1996

// True if a local time is in daylight saving, by the number of a rule or by a rule of the caller's. False for no date, for a
// number without a rule, and for a year that does not have both bounds, such as any year outside -9999 to 9999.
bool IsDaylightSaving(double value, int32_t rule = SystemDaylightRule);
bool IsDaylightSaving(double value, const ZVDaylightRule& rule);
}
