#pragma once

#include <cstdint>

// How much of a date is known, which the fraction of its value says. A fraction of nearly 0 means that the time of day is not
// known, and on January 1 that not even the day is known. Where that would be wrong, the fraction is a mark of less than a second
// that says what is known.
enum class ZVDatePrecision : int32_t
{
    None = 0,  // no date
    Year = 1,
    Day = 2,
    Time = 3,
};

namespace ZVDate
{
// The mark of a known time that is exactly midnight: 0.2 seconds, in days.
inline constexpr double MidnightMark = 2.3148148148148148e-6;
// The mark of a January 1 of which the day is known: 0.1 seconds. It also keeps 1899-12-30, whose number is 0, from being no
// date.
inline constexpr double DayMark = 1.1574074074074074e-6;
// A fraction below this, one second, is not a time unless it is the mark of midnight.
inline constexpr double LeastTime = 1.1574074074074073e-5;

ZVDatePrecision GetPrecision(double value);

// Returns the date with this precision, which may be more than it had: January 1 of the year, the whole day, or the time of the
// value. A time in the first second of a day becomes midnight.
double WithPrecision(double value, ZVDatePrecision precision);
}
