#pragma once

#include "core/date/ZVDateFields.h"

#include <cstdint>

#include <sys/time.h>

// Dates. A date with its time of day is one double, a count of days: 2.0 is 1900-01-01, 25569.0 is 1970-01-01 00:00:00, the
// whole part is found by rounding down and the fraction is the part of the day. 0.0 means no date, and so does a value that is
// not finite; every operation takes it as that. See ZVDatePrecision for what the fraction says of how much is known. A value
// does not tell its time zone.
namespace ZVDate
{
inline constexpr double UnixEpoch = 25569.0;
inline constexpr double Hour = 0.041666666666666664;
// How exactly fractions of a day are compared: 0.01 seconds.
inline constexpr double Tolerance = 1.1574074074074073e-07;

// True for 0.0, for what is not finite and for a value whose year does not fit 16 bits.
bool IsEmpty(double value);

// --- Fields ------------------------------------------------------------------------------------------------------------------

// The value of a date with a month from 1. A year from 1 to 25 means 2001 to 2025 and one from 26 to 99 means 1926 to 1999; the
// pivot does not move with the calendar. 0.0 for a year beyond -9999 to 9999 and for any other field out of its range; a day
// from 29 to 31 that its month has not got runs on into the next one. At midnight the value is a date without a time.
double FromFields(int32_t year, int32_t month, int32_t day, int32_t hour = 0, int32_t minute = 0, int32_t second = 0);

// Takes a value apart. wantTime asks for the time of day, in whole seconds that are cut or, with roundSeconds, rounded, even
// into the next day; wantDate asks for the date. What was not asked for is 0, and the day of the week and of the year need both.
// A fraction within the tolerance of a whole day is no time: it is midnight of that day.
ZVDateFields ToFields(double value, bool wantTime = true, bool roundSeconds = false, bool wantDate = true);

// The year as the calendar counts it, or 0 for no date.
int32_t YearOf(double value);
// False when either is no date.
bool IsSameDay(double a, double b);
// The same day and time in another year from -9999 to 9999, with February 29 becoming 28 where it must, and with the same
// precision.
double WithYear(double value, int32_t year);
// Rounds a value down to its day, which on January 1 leaves a year. The day with the number 0 gets a mark in place of being no
// date.
double MakeDateOnly(double value);

// The n-th day of a week in a month, n from 1, 0 being Sunday; 0.0 when the month has no so many. The year is taken as it stands.
double NthWeekday(int32_t year, int32_t month, int32_t weekday, int32_t n);
// The last one.
double LastWeekday(int32_t year, int32_t month, int32_t weekday);

// --- Text --------------------------------------------------------------------------------------------------------------------

// Reads a date by the date services of the tools library, with their flags. False, with value 0.0, for a null or empty text, for
// one that is no date, and where there are no such services.
bool Parse(const wchar_t* text, int32_t flags, double& value);

// --- Clocks ------------------------------------------------------------------------------------------------------------------

// The local time.
double Now();

// Seconds since 1970, rounded to the nearest, and 0 for no date. With asUTC the value is local time and is brought to UTC first,
// otherwise it is taken as it stands. Half a second is rounded up.
int64_t ToUnix(double value, bool asUTC = false);
// The value of seconds since 1970 as they stand. It has a time, at midnight too.
double FromUnix(int64_t seconds);

// The count of 100 nanoseconds since 1601, in whole seconds, of a value as it stands. False, with 0, for no date and for one
// that is not after the beginning of 1601.
bool ToFileTime(double value, uint64_t& fileTime);
// The value of such a count. It has a time; 0 gives no date.
double FromFileTime(uint64_t fileTime);

// The value as it stands as seconds and microseconds since 1970; zero for no date. The marks of the precision do not count as
// time.
timeval ToTimeval(double value);

// --- Time zone ---------------------------------------------------------------------------------------------------------------

// Brings local time to UTC and back, by the system's time zone as it was at that moment. No date stays no date.
double ToUTC(double value);
double ToLocal(double value);
// How far local time is ahead of UTC at a local time, in seconds; 0 for no date.
int32_t GetUTCOffset(double value);
}
