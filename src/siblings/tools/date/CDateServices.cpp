#include "siblings/tools/date/CDateServices.h"

#include "core/date/ZVCalendar.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVTimeUnits.h"
#include "siblings/tools/date/CDateReader.h"

namespace
{
constexpr double SecondsPerDay = ZVTimeUnits::SecondsPerDay;

constexpr double FirstValue = static_cast<double>(ZVCalendar::DayNumber(ZVCalendar::FirstYear, 1, 1));
constexpr double EndValue = static_cast<double>(ZVCalendar::DayNumber(ZVCalendar::LastYear, 12, 31) + 1);
}

double CDateServices::Parse(const wchar_t* text, int32_t flags)
{
    CParsedDate date;
    if (text == nullptr || !CDateReader::Read(text, date))
        return 0.0;
    const double value = ZVDate::WithPrecision(
        static_cast<double>(date.DayNumber) + (date.SecondOfDay - date.ZoneSeconds) / SecondsPerDay, date.Precision);
    const double asked = date.HasZone && (flags & LocalTime) != 0 ? ZVDate::ToLocal(value) : value;
    return asked >= FirstValue && asked < EndValue ? asked : 0.0;
}
