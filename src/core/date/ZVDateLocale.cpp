#include "core/date/ZVDateLocale.h"

#include "core/date/ZVDateNames.h"

#include <cstring>
#include <cwchar>
#include <langinfo.h>

namespace
{
// Far more than the date and time of any locale needs.
constexpr size_t MaximumLength = 256;

// The field order that a code of a date format means, if it comes first.
struct OrderCode
{
    char Code;
    ZVDateLocale::FieldOrder Order;
};

constexpr OrderCode OrderCodes[] = {
    {'m', ZVDateLocale::FieldOrder::MonthDayYear},
    {'b', ZVDateLocale::FieldOrder::MonthDayYear},
    {'B', ZVDateLocale::FieldOrder::MonthDayYear},
    {'h', ZVDateLocale::FieldOrder::MonthDayYear},
    {'D', ZVDateLocale::FieldOrder::MonthDayYear},
    {'d', ZVDateLocale::FieldOrder::DayMonthYear},
    {'e', ZVDateLocale::FieldOrder::DayMonthYear},
    {'y', ZVDateLocale::FieldOrder::YearMonthDay},
    {'Y', ZVDateLocale::FieldOrder::YearMonthDay},
    {'C', ZVDateLocale::FieldOrder::YearMonthDay},
    {'F', ZVDateLocale::FieldOrder::YearMonthDay},
};

// Calls a function with each code of a strftime format, without flags, widths and modifiers, until it returns true.
template <class Function>
bool AnyCode(const char* format, Function function)
{
    while ((format = strchr(format, '%')) != nullptr)
    {
        format += 1 + strspn(format + 1, "_-0^#123456789EO");
        if (*format == '\0')
            return false;
        if (function(*format))
            return true;
        ++format;
    }
    return false;
}

ZVString GetName(const wchar_t* name, ZVDateLocale::NameLength length)
{
    return length == ZVDateLocale::NameLength::Short ? ZVString(name, ZVDateNames::ShortLength) : ZVString(name);
}
}

ZVDateLocale::FieldOrder ZVDateLocale::GetFieldOrder()
{
    FieldOrder order = FieldOrder::MonthDayYear;
    AnyCode(nl_langinfo(D_FMT),
            [&](char code)
            {
                for (const OrderCode& orderCode : OrderCodes)
                    if (orderCode.Code == code)
                    {
                        order = orderCode.Order;
                        return true;
                    }
                return false;
            });
    return order;
}

ZVDateClock ZVDateLocale::GetClock()
{
    const bool has12Hours = AnyCode(nl_langinfo(T_FMT), [](char code) { return strchr("rIlpP", code) != nullptr; });
    return has12Hours ? ZVDateClock::Hours12 : ZVDateClock::Hours24;
}

ZVString ZVDateLocale::Write(const wchar_t* format, const ZVDateFields& fields)
{
    const tm time = ZVBrokenDownTime(fields);
    wchar_t text[MaximumLength];
    const size_t length = wcsftime(text, MaximumLength, format, &time);
    return ZVString(text, static_cast<int32_t>(length));
}

ZVString ZVDateLocale::GetMonthName(const ZVDateFields& fields, NameLength length, int32_t flags)
{
    if ((flags & ZVDate::EnglishNames) != 0)
        return GetName(ZVDateNames::Months[fields.Month], length);
    return Write(length == NameLength::Short ? L"%b" : L"%B", fields);
}

ZVString ZVDateLocale::GetDayName(const ZVDateFields& fields, NameLength length, int32_t flags)
{
    if ((flags & ZVDate::EnglishNames) != 0)
        return GetName(ZVDateNames::Days[fields.WeekDay], length);
    return Write(length == NameLength::Short ? L"%a" : L"%A", fields);
}
