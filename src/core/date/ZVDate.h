#pragma once

#include "core/date/ZVDateFields.h"

#include <cstdint>

#include <sys/time.h>

// Dates. A date with its time of day is one double, a number of days: 2.0 is 1900-01-01, 25569.0 is 1970-01-01 00:00:00. The
// whole part, found by rounding down, is the day, and the fraction is the part of the day. 0.0 means no date, and so does a value
// that is not finite, for every operation. The fraction also says how much of the date is known, see ZVDatePrecision. A value
// does not contain a time zone.
namespace ZVDate
{
inline constexpr double UnixEpoch = 25569.0;
inline constexpr double Hour = 0.041666666666666664;
// The tolerance with which fractions of a day are compared: 0.01 seconds.
inline constexpr double Tolerance = 1.1574074074074073e-07;

// True for 0.0, for a value that is not finite and for one whose year does not fit into 16 bits.
bool IsEmpty(double value);

// --- Fields ------------------------------------------------------------------------------------------------------------------

// The value of a date; the month counts from 1. A year from 1 to 25 means 2001 to 2025, and one from 26 to 99 means 1926 to 1999;
// this does not change with the current year. 0.0 for a year outside -9999 to 9999 and for any other field out of range. A day
// from 29 to 31 that the month does not have counts on into the next month. At midnight the value is a date without a time.
double FromFields(int32_t year, int32_t month, int32_t day, int32_t hour = 0, int32_t minute = 0, int32_t second = 0);

// Splits a value. wantTime asks for the time of day, cut to whole seconds or, with roundSeconds, rounded, possibly to the next
// day. wantDate asks for the date. What was not asked for is 0; the day of the week and the day of the year need both. A fraction
// within the tolerance of a whole day is midnight of that day.
ZVDateFields ToFields(double value, bool wantTime = true, bool roundSeconds = false, bool wantDate = true);

// The year, or 0 for no date.
int32_t YearOf(double value);
// False if either of them is no date.
bool IsSameDay(double a, double b);
// The same day and time with the same precision in another year, from -9999 to 9999. February 29 becomes February 28 if that year
// is not a leap year.
double WithYear(double value, int32_t year);
// Rounds a value down to its day; on January 1 the result is a year alone. The day with the number 0 gets a mark, or it would be
// no date.
double MakeDateOnly(double value);

// The n-th Monday, for example, of a month. weekday counts from 0 (Sunday), n from 1. 0.0 if the month does not have that many.
// The year is not expanded: 25 is the year 25.
double NthWeekday(int32_t year, int32_t month, int32_t weekday, int32_t n);
// The last Monday, for example, of a month.
double LastWeekday(int32_t year, int32_t month, int32_t weekday);

// --- Text --------------------------------------------------------------------------------------------------------------------

// Reads a date with the date services of the tools library and their flags. False, with a value of 0.0, if the text is null,
// empty or not a date, or if there are no such services.
bool Parse(const wchar_t* text, int32_t flags, double& value);

// --- Clocks ------------------------------------------------------------------------------------------------------------------

// The local time.
double Now();

// The seconds since 1970, rounded, with half a second rounded up; 0 for no date. With asUTC the value is local time, which is
// converted to UTC first; otherwise it is not converted.
int64_t ToUnix(double value, bool asUTC = false);
// The value of seconds since 1970, without conversion. It has a time, even at midnight.
double FromUnix(int64_t seconds);

// The number of 100 nanoseconds since 1601, in whole seconds, without conversion to UTC. False, with 0, for no date and for a
// date that is not after the beginning of 1601.
bool ToFileTime(double value, uint64_t& fileTime);
// The value of such a number. It has a time, even at midnight; 0 gives no date.
double FromFileTime(uint64_t fileTime);

// The seconds and microseconds since 1970, without conversion to UTC; zero for no date. The marks of ZVDatePrecision do not count
// as time.
timeval ToTimeval(double value);

// --- Time zone ---------------------------------------------------------------------------------------------------------------

// Convert local time to UTC and back, by the system's time zone as it was at that moment. No date stays no date.
double ToUTC(double value);
double ToLocal(double value);
// How many seconds local time is ahead of UTC at a local time; 0 for no date.
int32_t GetUTCOffset(double value);
}
