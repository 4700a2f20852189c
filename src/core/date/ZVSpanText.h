#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// Spans of time as text. Decimals have the decimal point of the locale. A span that is not finite gives an empty text.
namespace ZVDate
{
// The modes of ElapsedText.
inline constexpr int32_t SpanAsClock = 0;    // below a day the clock text, otherwise as in words
inline constexpr int32_t SpanInWords = 1;    // one number with its unit, "2.5 hours"
inline constexpr int32_t SpanInMinutes = 2;  // to the nearest minute, "2 hours 5 minutes"
inline constexpr int32_t SpanInHours = 3;    // "2.1 hours" from an hour on, or whole hours when no more than 3 minutes are left
inline constexpr int32_t SpanWithoutFewMinutes = 4;  // as SpanInMinutes, but 5 minutes and less behind hours are left out
inline constexpr int32_t SpanExact = 5;              // cut to whole minutes; below an hour with the seconds

// A span in words. A mode that is none is SpanInWords; a negative span has "-" in front.
ZVString ElapsedText(double seconds, int32_t mode);

// "1 hour", "2 hours".
ZVString NumberWithUnit(int64_t number, const wchar_t* unit);

// A span as a clock shows it, "1:02:03". Hours stand when there are at least hourDigits of them, and have two digits when
// hourDigits is 2 or more; otherwise, and with a negative hourDigits, the minutes count on beyond 59. precision is the count of
// decimals of the seconds, at most 6, to which the whole span is rounded.
ZVString TimeText(double seconds, int32_t hourDigits, int32_t precision = 0);
}
