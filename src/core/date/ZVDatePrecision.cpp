#include "core/date/ZVDatePrecision.h"

#include "core/date/ZVCalendar.h"
#include "core/date/ZVDate.h"

#include <cmath>

namespace
{
bool IsNear(double fraction, double mark)
{
    return std::fabs(fraction - mark) <= ZVDate::Tolerance;
}

// The day that a value belongs to, as a value.
double GetDay(double value)
{
    return std::floor(value + ZVDate::Tolerance);
}

// Slightly negative for a value slightly below a whole day.
double GetFraction(double value)
{
    return value - GetDay(value);
}

bool IsJanuaryFirst(double day)
{
    const ZVCalendar::Date date = ZVCalendar::FromDayNumber(static_cast<int64_t>(day));
    return date.Month == 1 && date.Day == 1;
}

bool HasTime(double fraction)
{
    return fraction >= ZVDate::LeastTime || IsNear(fraction, ZVDate::MidnightMark);
}

double WithDay(double value)
{
    const double day = GetDay(value);
    return day == 0.0 || IsJanuaryFirst(day) ? day + ZVDate::DayMark : day;
}
}

ZVDatePrecision ZVDate::GetPrecision(double value)
{
    if (IsEmpty(value))
        return ZVDatePrecision::None;
    const double fraction = GetFraction(value);
    if (HasTime(fraction))
        return ZVDatePrecision::Time;
    return IsJanuaryFirst(GetDay(value)) && !IsNear(fraction, DayMark) ? ZVDatePrecision::Year : ZVDatePrecision::Day;
}

double ZVDate::WithPrecision(double value, ZVDatePrecision precision)
{
    // Here 0.0 is a day, which is about to get its mark.
    if (value != 0.0 && IsEmpty(value))
        return 0.0;
    switch (precision)
    {
    case ZVDatePrecision::None:
        break;
    case ZVDatePrecision::Year:
        return static_cast<double>(
            ZVCalendar::DayNumber(ZVCalendar::FromDayNumber(static_cast<int64_t>(GetDay(value))).Year, 1, 1));
    case ZVDatePrecision::Day:
        return WithDay(value);
    case ZVDatePrecision::Time:
        return HasTime(GetFraction(value)) ? value : GetDay(value) + MidnightMark;
    }
    return 0.0;
}
