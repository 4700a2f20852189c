#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// Spans of time as text. The decimal point is the locale's. The text of a span that is not finite is empty.
namespace ZVDate
{
// The modes of ElapsedText.
inline constexpr int32_t SpanAsClock = 0;            // below a day as TimeText, otherwise as SpanInWords
inline constexpr int32_t SpanInWords = 1;            // one number with its unit, "2.5 hours"
inline constexpr int32_t SpanInMinutes = 2;          // to the nearest minute, "2 hours 5 minutes"
inline constexpr int32_t SpanInHours = 3;            // "2.1 hours" from an hour on, or whole hours if at most 3 minutes are left
inline constexpr int32_t SpanWithoutFewMinutes = 4;  // as SpanInMinutes, but after hours up to 5 minutes are left out
inline constexpr int32_t SpanExact = 5;              // cut to whole minutes; below an hour with seconds

// A span in words. An unknown mode counts as SpanInWords; a negative span begins with "-".
ZVString ElapsedText(double seconds, int32_t mode);

// "1 hour", "2 hours".
ZVString NumberWithUnit(int64_t number, const wchar_t* unit);

// A span as on a clock, "1:02:03". Hours are written if there are at least hourDigits of them, with two digits if hourDigits is 2
// or more. Otherwise, and with a negative hourDigits, the minutes count on beyond 59. The seconds have precision decimals, at
// most 6, to which the whole span is rounded.
ZVString TimeText(double seconds, int32_t hourDigits, int32_t precision = 0);
}
