#include "core/date/ZVCalendar.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVDaylightSaving.h"
#include "core/date/ZVTimeUnits.h"

#include <cmath>
#include <ctime>
#include <iterator>

namespace
{
constexpr double SecondsPerDay = ZVTimeUnits::SecondsPerDay;

// The rules from number 1 on. In autumn they end before clocks are really changed, but callers rely on these hours.
constexpr ZVDaylightRule Rules[] = {
    {{3, 0, 2, 2},                     {11, 0, 1, 1}                    },
    {{3, 0, ZVDaylightBound::Last, 2}, {10, 0, ZVDaylightBound::Last, 1}},
};
constexpr int32_t RuleCount = static_cast<int32_t>(std::size(Rules));

// Adds seconds to a date. The result has a time.
double AddSeconds(double value, int64_t seconds)
{
    return ZVDate::WithPrecision(value + static_cast<double>(seconds) / SecondsPerDay, ZVDatePrecision::Time);
}

// What the system library knows about a local time, and the seconds from 1970 to that moment.
struct LocalMoment
{
    tm Fields {};
    int64_t Seconds = 0;
};

LocalMoment AskSystem(const ZVDateFields& fields)
{
    LocalMoment moment;
    moment.Fields = ZVBrokenDownTime(fields);
    moment.Seconds = mktime(&moment.Fields);
    return moment;
}

// 0.0 if the year does not have this bound.
double FindBound(int32_t year, const ZVDaylightBound& bound)
{
    const double day = bound.Nth == ZVDaylightBound::Last ? ZVDate::LastWeekday(year, bound.Month, bound.Weekday)
                                                          : ZVDate::NthWeekday(year, bound.Month, bound.Weekday, bound.Nth);
    return day == 0.0 ? 0.0 : day + bound.Hours * ZVDate::Hour;
}
}

int32_t ZVDate::GetUTCOffset(double value)
{
    const ZVDateFields fields = ToFields(value);
    if (!fields.Valid)
        return 0;
    tm asUTC = ZVBrokenDownTime(fields);
    return static_cast<int32_t>(timegm(&asUTC) - AskSystem(fields).Seconds);
}

double ZVDate::ToUTC(double value)
{
    const int32_t offset = GetUTCOffset(value);
    if (offset == 0)
        return IsEmpty(value) ? 0.0 : value;
    return AddSeconds(value, -offset);
}

double ZVDate::ToLocal(double value)
{
    if (IsEmpty(value))
        return 0.0;
    const time_t seconds = static_cast<time_t>(std::floor((value + Tolerance - UnixEpoch) * SecondsPerDay));
    tm local {};
    tzset();  // localtime_r may not notice a change of TZ
    if (localtime_r(&seconds, &local) == nullptr || local.tm_gmtoff == 0)
        return value;
    return AddSeconds(value, local.tm_gmtoff);
}

bool ZVDate::IsDaylightSaving(double value, int32_t rule)
{
    if (rule == SystemDaylightRule)
    {
        const ZVDateFields fields = ToFields(value);
        return fields.Valid && AskSystem(fields).Fields.tm_isdst > 0;
    }
    return rule >= 1 && rule <= RuleCount && IsDaylightSaving(value, Rules[rule - 1]);
}

bool ZVDate::IsDaylightSaving(double value, const ZVDaylightRule& rule)
{
    if (IsEmpty(value))
        return false;
    const int32_t year = YearOf(value);
    const double start = FindBound(year, rule.Start);
    const double end = FindBound(year, rule.End);
    if (start == 0.0 || end == 0.0)
        return false;
    const bool isFromStart = value + Tolerance >= start;
    const bool isBeforeEnd = value + Tolerance < end;
    return start <= end ? isFromStart && isBeforeEnd : isFromStart || isBeforeEnd;
}
