#pragma once

#include <cstdint>

// How much of a date is known. The fraction of the value says it: a fraction next to nothing means that no time of day is known,
// and on January 1 not even the day. Where these are wrong, the fraction is a mark of less than a second that says what holds.
enum class ZVDatePrecision : int32_t
{
    None = 0,  // no date
    Year = 1,
    Day = 2,
    Time = 3,
};

namespace ZVDate
{
// The mark of a known time that is exactly midnight, in days: 0.2 seconds.
inline constexpr double MidnightMark = 2.3148148148148148e-6;
// The mark of a January 1 that is known as a day: 0.1 seconds. It also keeps 1899-12-30, whose number is 0, from being no date.
inline constexpr double DayMark = 1.1574074074074074e-6;
// Below this fraction of a day, a second, nothing but the mark of midnight is a time.
inline constexpr double LeastTime = 1.1574074074074073e-5;

ZVDatePrecision GetPrecision(double value);

// The date with a fraction by which it has this precision, which may be more than it had: January 1 of the year, the whole day,
// or the time that it has. A time in the first second of a day becomes its midnight.
double WithPrecision(double value, ZVDatePrecision precision);
}
