#include "core/date/ZVDateText.h"

#include "core/date/ZVCalendar.h"
#include "core/date/ZVDate.h"
#include "core/date/ZVDateLocale.h"
#include "core/date/ZVDatePrecision.h"

#include <cstdlib>

namespace
{
constexpr int32_t YearsPerDecade = 10;
constexpr int32_t NoonHour = 12;

// A format with the six fields from the year to the second, in this order.
ZVString WriteFields(const wchar_t* format, double value, const ZVString& end = ZVString())
{
    const ZVDateFields fields = ZVDate::ToFields(value);
    if (!fields.Valid)
        return ZVString();
    return ZVFormat(format, fields.GetCalendarYear(), fields.GetCalendarMonth(), fields.Day, fields.Hour, fields.Minute,
                    fields.Second, end);
}

ZVString GetZoneText(double value)
{
    const int32_t offset = ZVDate::GetUTCOffset(value);
    if (offset == 0)
        return L"Z";
    const int32_t minutes = std::abs(offset) / 60;
    return ZVFormat(L"%c%02d:%02d", offset < 0 ? L'-' : L'+', minutes / 60, minutes % 60);
}
}

ZVString ZVDate::ToISO(double value, bool includeZone, bool dateOnlyIfPossible)
{
    const ZVDatePrecision precision = GetPrecision(value);
    if (dateOnlyIfPossible && precision == ZVDatePrecision::Year)
        return ZVFormat(L"%04d", YearOf(value));
    if (dateOnlyIfPossible && precision == ZVDatePrecision::Day)
        return WriteFields(L"%04d-%02d-%02d", value);
    return WriteFields(L"%04d-%02d-%02dT%02d:%02d:%02d%s", value, includeZone ? GetZoneText(value) : ZVString());
}

ZVString ZVDate::ToCompactUTC(double value)
{
    return WriteFields(L"%04d%02d%02dT%02d%02d%02dZ", value);
}

ZVString ZVDate::ToRFC1123(double value)
{
    const ZVDateFields fields = ToFields(value);
    if (!fields.Valid)
        return ZVString();
    return ZVFormat(L"%s, %d %s %d %02d:%02d:%02d GMT",
                    ZVDateLocale::GetDayName(fields, ZVDateLocale::NameLength::Short, EnglishNames), fields.Day,
                    ZVDateLocale::GetMonthName(fields, ZVDateLocale::NameLength::Short, EnglishNames), fields.GetCalendarYear(),
                    fields.Hour, fields.Minute, fields.Second);
}

ZVString ZVDate::ToFileNameText(double value)
{
    return WriteFields(L"%04d%02d%02d-%02d%02d%02d", value);
}

ZVString ZVDate::ToDecade(double value)
{
    if (IsEmpty(value))
        return ZVString();
    return ZVFormat(L"%d's", ZVCalendar::FloorDivide(YearOf(value), YearsPerDecade) * YearsPerDecade);
}

ZVString ZVDate::ToTimeOfDay(double value, ZVDateClock clock, ZVDateSeconds seconds)
{
    if (GetPrecision(value) != ZVDatePrecision::Time)
        return ZVString();
    const ZVDateFields fields = ToFields(value);
    const bool hasSeconds = seconds == ZVDateSeconds::Always || (seconds == ZVDateSeconds::Automatic && fields.Second != 0);
    if (clock == ZVDateClock::Hours24)
        return ZVDateLocale::Write(hasSeconds ? L"%T" : L"%R", fields);
    ZVString text = ZVDateLocale::Write(hasSeconds ? L"%I:%M:%S %p" : L"%I:%M %p", fields);
    // Many locales have no names for the two halves of a day.
    if (text.EndsWith(L' '))
        text += fields.Hour < NoonHour ? L"am" : L"pm";
    text.Replace(L"AM", L"am");
    text.Replace(L"PM", L"pm");
    return text;
}

ZVString ZVDate::ToTimeWords(double value)
{
    if (GetPrecision(value) != ZVDatePrecision::Time)
        return ZVString();
    const ZVDateFields fields = ToFields(value);
    const bool isFullHour = fields.Minute == 0 && fields.Second == 0;
    if (isFullHour && fields.Hour == 0)
        return L"Midnight";
    if (isFullHour && fields.Hour == NoonHour)
        return L"Noon";
    return ToTimeOfDay(value, ZVDateClock::Hours12);
}

ZVString ZVDate::ToShortDate(double value, int32_t flags)
{
    const ZVDatePrecision precision = GetPrecision(value);
    if (precision == ZVDatePrecision::None)
        return ZVString();
    const ZVDateFields fields = ToFields(value);
    const int32_t year = fields.GetCalendarYear();
    if (precision == ZVDatePrecision::Year)
        return ZVString::FromInt(year);
    const ZVString month = ZVDateLocale::GetMonthName(fields, ZVDateLocale::NameLength::Short, flags);
    const ZVDateLocale::FieldOrder order = ZVDateLocale::GetFieldOrder();
    const bool isDayFirst = order == ZVDateLocale::FieldOrder::DayMonthYear;
    const ZVString day = isDayFirst ? ZVFormat(L"%d %s", fields.Day, month) : ZVFormat(L"%s %d", month, fields.Day);
    if (year == YearOf(Now()))
        return day;
    return order == ZVDateLocale::FieldOrder::YearMonthDay ? ZVFormat(L"%d %s", year, day) : ZVFormat(L"%s %d", day, year);
}
