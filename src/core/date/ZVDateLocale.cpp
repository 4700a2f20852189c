#include "core/date/ZVDateLocale.h"

#include "core/date/ZVDateNames.h"
#include "core/date/ZVDateText.h"

#include <cstring>
#include <cwchar>
#include <langinfo.h>

namespace
{
// Far above what the date and time of any locale takes.
constexpr size_t MaximumLength = 256;

// What the codes of a date format tell of the field order, by whichever comes first.
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

// Calls a function with each code of a strftime format, without flags, widths and modifiers, until it gives true.
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

ZVString GetName(const wchar_t* name, bool isShort)
{
    return isShort ? ZVString(name, ZVDateNames::ShortLength) : ZVString(name);
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

bool ZVDateLocale::Has12HourClock()
{
    return AnyCode(nl_langinfo(T_FMT), [](char code) { return strchr("rIlpP", code) != nullptr; });
}

ZVString ZVDateLocale::Write(const wchar_t* format, const ZVDateFields& fields)
{
    const tm time = ZVBrokenDownTime(fields);
    wchar_t text[MaximumLength];
    const size_t length = wcsftime(text, MaximumLength, format, &time);
    return ZVString(text, static_cast<int32_t>(length));
}

ZVString ZVDateLocale::GetMonthName(const ZVDateFields& fields, bool isShort, int32_t flags)
{
    if ((flags & ZVDate::EnglishNames) != 0)
        return GetName(ZVDateNames::Months[fields.Month], isShort);
    return Write(isShort ? L"%b" : L"%B", fields);
}

ZVString ZVDateLocale::GetDayName(const ZVDateFields& fields, bool isShort, int32_t flags)
{
    if ((flags & ZVDate::EnglishNames) != 0)
        return GetName(ZVDateNames::Days[fields.WeekDay], isShort);
    return Write(isShort ? L"%a" : L"%A", fields);
}
