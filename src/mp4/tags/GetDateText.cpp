#include "mp4/tags/GetDateText.h"

#include "core/date/ZVDateText.h"

#include <cmath>

namespace
{
// A number below is a year. As days they would be before the end of 1905.
constexpr double LeastDays = 2200;
// More would be after the year 9999. A day without hyphens, as 20240506, is such a number.
constexpr double MaximumDays = 2'958'466;
}

ZVString GetDateText(const ZVString& value)
{
    ZVString number = value;
    number.TrimWhitespace();
    int32_t used = 0;
    const double days = number.ToDouble(&used, true);
    if (number.IsEmpty() || used != number.GetLength() || !std::isfinite(days))
        return value;
    if (days == 0)
        return {};
    const bool isDays = days < 0 || (days >= LeastDays && days < MaximumDays);
    return isDays ? ZVDate::ToISO(days, false, true) : value;
}

ZVString GetYearText(const ZVString& date)
{
    constexpr int32_t YearLength = 4;
    return date.GetAt(YearLength) == L'-' ? date.Left(YearLength) : date;
}
