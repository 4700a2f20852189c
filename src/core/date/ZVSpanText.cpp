#include "core/date/ZVSpanText.h"

#include "core/date/ZVTimeUnits.h"

#include <algorithm>
#include <cmath>

namespace
{
using namespace ZVTimeUnits;

constexpr int32_t SecondsPerYear = 365 * SecondsPerDay;

// Up to this a span with the most decimals fits into 64 bits.
constexpr double LongestSpan = 9e12;
constexpr int32_t MaximumPrecision = 6;

constexpr int64_t FewMinutes = 5;
// Three minutes are 0.05 of an hour.
constexpr int64_t MinutesWorthADecimal = 3;

// A unit for spans of at least that many seconds. Shorter spans are written in seconds.
struct SpanUnit
{
    int32_t Least;
    int32_t Length;
    const wchar_t* Format;
};

constexpr SpanUnit SpanUnits[] = {
    {SecondsPerYear,     SecondsPerYear,   L"%.2f years"  },
    {2 * SecondsPerDay,  SecondsPerDay,    L"%.1f days"   },
    {2 * SecondsPerHour, SecondsPerHour,   L"%.1f hours"  },
    {SecondsPerMinute,   SecondsPerMinute, L"%.0f minutes"},
};

ZVString WriteInWords(double seconds)
{
    for (const SpanUnit& unit : SpanUnits)
        if (seconds >= unit.Least)
            return ZVFormat(unit.Format, seconds / unit.Length);
    return ZVFormat(L"%d seconds", static_cast<int64_t>(seconds));
}

// A number of two units; the second one is left out if it is 0.
ZVString WriteTwo(int64_t first, const wchar_t* firstUnit, int64_t second, const wchar_t* secondUnit)
{
    const ZVString text = ZVDate::NumberWithUnit(first, firstUnit);
    return second == 0 ? text : text + L" " + ZVDate::NumberWithUnit(second, secondUnit);
}

ZVString WriteExact(double seconds, int32_t mode)
{
    const bool hasSeconds = mode == ZVDate::SpanExact;
    const int64_t whole = static_cast<int64_t>(hasSeconds ? seconds : seconds + SecondsPerMinute / 2);
    const int64_t hours = whole / SecondsPerHour;
    const int64_t minutes = whole / SecondsPerMinute % MinutesPerHour;
    if (hours == 0 && hasSeconds && minutes == 0)
        return ZVDate::NumberWithUnit(whole, L"second");
    if (hours == 0)
        return WriteTwo(minutes, L"minute", hasSeconds ? whole % SecondsPerMinute : 0, L"second");
    if (mode == ZVDate::SpanInHours && minutes > MinutesWorthADecimal)
        return ZVFormat(L"%.1f hours", static_cast<double>(hours) + static_cast<double>(minutes) / MinutesPerHour);
    const bool leavesMinutes = mode == ZVDate::SpanInHours || (mode == ZVDate::SpanWithoutFewMinutes && minutes <= FewMinutes);
    return WriteTwo(hours, L"hour", leavesMinutes ? 0 : minutes, L"minute");
}
}

ZVString ZVDate::ElapsedText(double seconds, int32_t mode)
{
    if (!std::isfinite(seconds))
        return ZVString();
    const double magnitude = std::min(std::fabs(seconds), LongestSpan);
    if (mode == SpanAsClock && magnitude < SecondsPerDay)
        return TimeText(seconds, 1);
    const bool isExact = mode >= SpanInMinutes && mode <= SpanExact;
    const ZVString text = isExact ? WriteExact(magnitude, mode) : WriteInWords(magnitude);
    return seconds < 0.0 && !text.StartsWith(L"0 ") ? L"-" + text : text;
}

ZVString ZVDate::NumberWithUnit(int64_t number, const wchar_t* unit)
{
    return ZVFormat(number == 1 ? L"%d %s" : L"%d %ss", number, unit);
}

ZVString ZVDate::TimeText(double seconds, int32_t hourDigits, int32_t precision)
{
    if (!std::isfinite(seconds))
        return ZVString();
    precision = std::clamp(precision, 0, MaximumPrecision);
    int64_t unitsPerSecond = 1;
    for (int32_t index = 0; index < precision; ++index)
        unitsPerSecond *= 10;
    // Rounded as a whole, so that 59.99 seconds do not become "60.0".
    const int64_t units = std::llround(std::min(std::fabs(seconds), LongestSpan) * static_cast<double>(unitsPerSecond));
    const int64_t unitsPerMinute = unitsPerSecond * SecondsPerMinute;
    const int64_t minutes = units / unitsPerMinute;
    const double rest = static_cast<double>(units % unitsPerMinute) / static_cast<double>(unitsPerSecond);
    const ZVString secondsText = ZVString::FromDouble(rest, precision, true, 2);
    const bool isNegative = seconds < 0.0 && units > 0;

    const int64_t hours = minutes / MinutesPerHour;
    if (hourDigits < 0 || hours < hourDigits)
        return ZVFormat(isNegative ? L"-%d:%s" : L"%d:%s", minutes, secondsText);
    const ZVString hoursText = ZVFormat(hourDigits >= 2 ? L"%02d:" : L"%d:", hours);
    return ZVFormat(isNegative ? L"-%s%02d:%s" : L"%s%02d:%s", hoursText, minutes % MinutesPerHour, secondsText);
}
