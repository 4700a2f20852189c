#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

enum class ZVDateClock : int32_t
{
    Hours12,
    Hours24,
};

// Whether a time of day is written with its seconds. Automatic means if they are not 0.
enum class ZVDateSeconds : int32_t
{
    Never,
    Always,
    Automatic,
};

// Dates as text; the text of no date is empty. No form converts to another time zone, and seconds are cut, not rounded.
namespace ZVDate
{
// Flags of Format. EnglishNames is also a flag of ToShortDate.
inline constexpr int32_t CodesOnly = 4;
inline constexpr int32_t EnglishNames = 8;  // of months and days, whatever the locale

// --- For machines, the same in every locale ----------------------------------------------------------------------------------

// ISO 8601, "2024-05-06T07:08:09". includeZone adds how far that local time is ahead of UTC, as "+02:00", or "Z" if it is not.
// With dateOnlyIfPossible a date without a time is written as the day, and a year alone as the year, both without a zone.
ZVString ToISO(double value, bool includeZone = false, bool dateOnlyIfPossible = false);
// "20240506T070809Z", for a value in UTC.
ZVString ToCompactUTC(double value);
// "Mon, 6 May 2024 07:08:09 GMT", for a value in UTC.
ZVString ToRFC1123(double value);
// "20240506-070809".
ZVString ToFileNameText(double value);

// --- For people --------------------------------------------------------------------------------------------------------------

// "2020's".
ZVString ToDecade(double value);
// The time of day, "19:08" or "07:08 pm"; empty if it is not known.
ZVString ToTimeOfDay(double value, ZVDateClock clock, ZVDateSeconds seconds = ZVDateSeconds::Automatic);
// "Midnight", "Noon" or the 12-hour time of day; empty if it is not known.
ZVString ToTimeWords(double value);
// "May 6 2024" in the locale's order, without the year if it is the current one. A year alone is written as the year.
ZVString ToShortDate(double value, int32_t flags = 0);

// Writes a date by a pattern. Text in double quotes is copied, and a doubled quote is a quote. Outside quotes these words, in any
// case and even inside other words, are replaced by the form that they stand for, or by nothing if the date does not say as much:
//
//   year  month  dayordinal  dayname      the year, the month's name, "6th", the name of the day of the week
//   hour  minute  second                  two digits each, on the 24-hour clock
//   time  shorttime                       the time of day by the locale's clock, with seconds unless they are 0; without seconds
//   date  shortdate                       the date in the locale's own form; ToShortDate
//   datetime  shortdatetime               date and time; shortdate and shorttime
//   filename  decade                      ToFileNameText; ToDecade
//   elapsed  elapsedago                   the time from the value, which is local time, to now in words; the same with "ago"
//
// The codes %A %a %B %b %c %d %H %I %j %M %m %p %S %U %W %w %X %x %Y %y are those of strftime, whatever the precision, and %% is
// a percent sign. Everything else is copied. With CodesOnly the words and quotes have no meaning.
ZVString Format(double value, const wchar_t* pattern, int32_t flags = 0);
}
