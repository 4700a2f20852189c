#include "core/date/ZVDate.h"

#include "contracts/IZVDateServices.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/date/ZVCalendar.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVTimeUnits.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int32_t MinimumYear = -9999;
constexpr int32_t MaximumYear = 9999;

// Years of two digits below the pivot belong to 2000, the others to 1900.
constexpr int32_t LastTwoDigitYear = 99;
constexpr int32_t TwoDigitPivot = 26;

using ZVTimeUnits::MillisecondsPerSecond;
using ZVTimeUnits::SecondsPerHour;
using ZVTimeUnits::SecondsPerMinute;
constexpr double SecondsPerDay = ZVTimeUnits::SecondsPerDay;
constexpr int32_t MillisecondsPerDay = ZVTimeUnits::SecondsPerDay * MillisecondsPerSecond;

// The days whose year fits into 16 bits.
constexpr int64_t FirstDayNumber = ZVCalendar::DayNumber(INT16_MIN, 1, 1);
constexpr int64_t LastDayNumber = ZVCalendar::DayNumber(INT16_MAX, 12, 31);

constexpr int32_t DateServicesNumber = 1;

int32_t ExpandYear(int32_t year)
{
    if (year < 1 || year > LastTwoDigitYear)
        return year;
    return year + (year < TwoDigitPivot ? 2000 : 1900);
}

bool IsBetween(int32_t number, int32_t least, int32_t most)
{
    return number >= least && number <= most;
}

// The milliseconds of a fraction of a day. The fraction is slightly negative for a value slightly below a whole day.
int32_t GetMilliseconds(double fraction)
{
    return fraction <= ZVDate::Tolerance ? 0 : static_cast<int32_t>(fraction * MillisecondsPerDay + 0.5);
}

void SetTime(ZVDateFields& fields, int32_t milliseconds)
{
    const int32_t seconds = milliseconds / MillisecondsPerSecond;
    fields.Hour = seconds / SecondsPerHour;
    fields.Minute = seconds / SecondsPerMinute % SecondsPerMinute;
    fields.Second = seconds % SecondsPerMinute;
}

void SetDate(ZVDateFields& fields, int64_t number, bool withDayNumbers)
{
    const ZVCalendar::Date date = ZVCalendar::FromDayNumber(number);
    fields.Year = date.Year - ZVDateFields::BaseYear;
    fields.Month = date.Month - 1;
    fields.Day = date.Day;
    if (!withDayNumbers)
        return;
    fields.WeekDay = ZVCalendar::DayOfWeek(number) - 1;
    fields.YearDay = static_cast<int32_t>(number - ZVCalendar::DayNumber(date.Year, 1, 1));
}
}

bool ZVDate::IsEmpty(double value)
{
    // In this form NaN counts as empty.
    return value == 0.0 || !(value + Tolerance >= static_cast<double>(FirstDayNumber)) ||
           !(value + Tolerance < static_cast<double>(LastDayNumber + 1));
}

double ZVDate::FromFields(int32_t year, int32_t month, int32_t day, int32_t hour, int32_t minute, int32_t second)
{
    const int32_t fullYear = ExpandYear(year);
    if (!IsBetween(fullYear, MinimumYear, MaximumYear) || !IsBetween(month, 1, 12) || !IsBetween(day, 1, 31) ||
        !IsBetween(hour, 0, 23) || !IsBetween(minute, 0, 59) || !IsBetween(second, 0, 59))
        return 0.0;
    const int32_t secondOfDay = hour * SecondsPerHour + minute * SecondsPerMinute + second;
    const double value = static_cast<double>(ZVCalendar::DayNumber(fullYear, month, day)) + secondOfDay / SecondsPerDay;
    return value == 0.0 ? DayMark : value;
}

ZVDateFields ZVDate::ToFields(double value, bool wantTime, bool roundSeconds, bool wantDate)
{
    ZVDateFields fields;
    if (IsEmpty(value))
        return fields;
    fields.Valid = true;
    const double day = std::floor(value + Tolerance);
    int64_t number = static_cast<int64_t>(day);
    if (wantTime)
    {
        int32_t milliseconds = GetMilliseconds(value - day);
        if (roundSeconds)
            milliseconds = (milliseconds + MillisecondsPerSecond / 2) / MillisecondsPerSecond * MillisecondsPerSecond;
        if (milliseconds >= MillisecondsPerDay)
        {
            milliseconds = 0;
            ++number;
        }
        SetTime(fields, milliseconds);
    }
    if (wantDate)
        SetDate(fields, number, wantTime);
    return fields;
}

int32_t ZVDate::YearOf(double value)
{
    const ZVDateFields fields = ToFields(value, false);
    return fields.Valid ? fields.GetCalendarYear() : 0;
}

bool ZVDate::IsSameDay(double a, double b)
{
    const ZVDateFields left = ToFields(a, false);
    const ZVDateFields right = ToFields(b, false);
    return left.Valid && right.Valid && left.Year == right.Year && left.Month == right.Month && left.Day == right.Day;
}

double ZVDate::WithYear(double value, int32_t year)
{
    const ZVDateFields fields = ToFields(value, false);
    if (!fields.Valid || !IsBetween(year, MinimumYear, MaximumYear))
        return 0.0;
    const int32_t month = fields.GetCalendarMonth();
    const int32_t day = std::min(fields.Day, ZVCalendar::DaysInMonth(year, month));
    const double fraction = value - std::floor(value + Tolerance);
    const double moved = static_cast<double>(ZVCalendar::DayNumber(year, month, day)) + fraction;
    return WithPrecision(moved, GetPrecision(value));
}

double ZVDate::MakeDateOnly(double value)
{
    if (IsEmpty(value))
        return 0.0;
    const double day = std::floor(value);
    return day == 0.0 ? DayMark : day;
}

double ZVDate::NthWeekday(int32_t year, int32_t month, int32_t weekday, int32_t n)
{
    if (!IsBetween(year, MinimumYear, MaximumYear) || !IsBetween(month, 1, 12) || !IsBetween(weekday, 0, 6) ||
        !IsBetween(n, 1, 5))
        return 0.0;
    const int64_t first = ZVCalendar::DayNumber(year, month, 1);
    const int32_t firstWeekday = ZVCalendar::DayOfWeek(first) - 1;
    const int32_t day =
        (weekday - firstWeekday + ZVCalendar::DaysPerWeek) % ZVCalendar::DaysPerWeek + ZVCalendar::DaysPerWeek * (n - 1);
    if (day >= ZVCalendar::DaysInMonth(year, month))
        return 0.0;
    const int64_t number = first + day;
    return number == 0 ? DayMark : static_cast<double>(number);
}

double ZVDate::LastWeekday(int32_t year, int32_t month, int32_t weekday)
{
    for (int32_t n = 5; n > 1; --n)
        if (const double value = NthWeekday(year, month, weekday, n); value != 0.0)
            return value;
    return NthWeekday(year, month, weekday, 1);
}

bool ZVDate::Parse(const wchar_t* text, int32_t flags, double& value)
{
    value = 0.0;
    if (text == nullptr || *text == L'\0' || g_pZVTools == nullptr)
        return false;
    IZVDateServices* services = g_pZVTools->GetDateServices(DateServicesNumber);
    if (services == nullptr)
        return false;
    value = services->Parse(text, flags);
    // NaN is not equal to 0.0, so it counts as a result too.
    return value != 0.0;
}
