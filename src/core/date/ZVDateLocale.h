#pragma once

#include "core/date/ZVDateFields.h"
#include "core/string/ZVString.h"

// How the locale of the process writes dates.
namespace ZVDateLocale
{
enum class FieldOrder : int32_t
{
    MonthDayYear,
    DayMonthYear,
    YearMonthDay,
};

FieldOrder GetFieldOrder();
bool Has12HourClock();

// The text of a format of the system's strftime. Only for fields that are valid.
ZVString Write(const wchar_t* format, const ZVDateFields& fields);

// The name of the month or of the day of the week of valid fields, in English when flags holds ZVDate::EnglishNames.
ZVString GetMonthName(const ZVDateFields& fields, bool isShort, int32_t flags);
ZVString GetDayName(const ZVDateFields& fields, bool isShort, int32_t flags);
}
