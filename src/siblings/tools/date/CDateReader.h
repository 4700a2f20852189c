#pragma once

#include "core/date/ZVDatePrecision.h"

#include <cstdint>

// A date as it was read from a text.
struct CParsedDate
{
    int64_t DayNumber = 0;     // see ZVCalendar
    double SecondOfDay = 0.0;  // 86400.0 for 24:00
    int32_t ZoneSeconds = 0;   // how many seconds the time zone in the text is ahead of UTC
    bool HasZone = false;
    ZVDatePrecision Precision = ZVDatePrecision::None;
};

// Reads dates as tags, containers and servers write them:
//
//   2024   2024-05   2024-05-06   20240506   2024-127   2024127   2024-W19-1   2024W191   2024-W19     ISO 8601
//   2024-5-6   2024/05/06   2024:05:06   2024.05.06   6.5.2024                                          tags, EXIF
//   6 May 2024   6-May-2024   6-May-24   6 May 24   May 6, 2024   May 2024   2024 May 6                 RFC 1123, RFC 850, RIFF
//   May  6 07:08:09 2024   May  6 07:08:09 UTC 2024                                                     asctime, RIFF IDIT
//   202405060708   20240506070809                                                                       digits alone
//   133594530000000000                                                                                  FILETIME, in UTC
//
// A day of the week may come first and is not compared with the date. A time may follow after "T" or blanks: 07, 07:08, 07:08:09,
// 0708 or 070809, up to 24:00, and its last part may have decimals after "." or ",". A time zone may follow the time: Z, UTC,
// GMT, UT, +02, +02:00, +0200 or one of the names in RFC 822. Names are English, in upper or lower case, and may be cut to three
// letters or more. Blanks around the date are ignored. Digits may be of any script in ZVDigits.
//
// 00 for a day, or for both month and day, means that they are not known: 2024-05-00 is read as 2024-05, and 2024-00-00 as 2024.
//
// Anything else is no date, and neither is a day that is not in the calendar. Two digits of a year are read as by
// ZVDate::FromFields.
namespace CDateReader
{
// False if the text is not a date. Takes time in proportion to the length of the text.
bool Read(const wchar_t* text, CParsedDate& date);
}
