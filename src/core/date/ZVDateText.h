#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// When a time of day is told with its seconds. Automatic is when they are not 0.
enum class ZVDateSeconds : int32_t
{
    Never,
    Always,
    Automatic,
};

// Dates as text. No date gives an empty text. No form shifts a time to another zone, and seconds are cut.
namespace ZVDate
{
// Flags of Format. EnglishNames also holds for the names in a short date.
inline constexpr int32_t CodesOnly = 4;
inline constexpr int32_t EnglishNames = 8;  // of months and days, whatever the locale

// --- For machines, the same in every locale ----------------------------------------------------------------------------------

// ISO 8601, "2024-05-06T07:08:09". includeZone adds how far that local time is ahead of UTC, as "+02:00", or "Z" where it is not.
// With dateOnlyIfPossible a date without a time is its day, and a year alone is the year, both without a zone.
ZVString ToISO(double value, bool includeZone = false, bool dateOnlyIfPossible = false);
// "20240506T070809Z" of a value in UTC.
ZVString ToCompactUTC(double value);
// "Mon, 6 May 2024 07:08:09 GMT" of a value in UTC.
ZVString ToRFC1123(double value);
// "20240506-070809".
ZVString ToFileNameText(double value);

// --- For people --------------------------------------------------------------------------------------------------------------

// "2020's".
ZVString ToDecade(double value);
// The time of day, "19:08" or "07:08 pm"; empty when it is not known.
ZVString ToTimeOfDay(double value, bool is24Hour, ZVDateSeconds seconds = ZVDateSeconds::Automatic);
// "Midnight", "Noon" or the 12-hour time of day; empty when it is not known.
ZVString ToTimeWords(double value);
// "May 6 2024" in the locale's order, without the year when it is this one. A year alone is the year.
ZVString ToShortDate(double value, int32_t flags = 0);

// A date by a pattern. Text in double quotes is copied, and a doubled quote is a quote. Outside of quotes these words, in any
// case and wherever they stand, become the form of that name, or nothing when the date does not tell as much:
//
//   year  month  dayordinal  dayname      the year, the month's name, "6th", the name of the day of the week
//   hour  minute  second                  two digits each, on the 24-hour clock
//   time  shorttime                       the time of day by the locale's clock, with seconds that are not 0, and without seconds
//   date  shortdate                       the date in the locale's own form, and ToShortDate
//   datetime  shortdatetime               date and time, shortdate and shorttime
//   filename  decade                      ToFileNameText, ToDecade
//   elapsed  elapsedago                   the time from the value to now, local time, in words; the same with "ago"
//
// The codes %A %a %B %b %c %d %H %I %j %M %m %p %S %U %W %w %X %x %Y %y are those of strftime, whatever the precision, and %% is
// a percent sign. Everything else is copied. With CodesOnly only the codes work.
ZVString Format(double value, const wchar_t* pattern, int32_t flags = 0);
}
