#pragma once

#include "core/date/ZVDateFields.h"
#include "core/date/ZVDateText.h"
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
ZVDateClock GetClock();

// Writes valid fields in a format of strftime.
ZVString Write(const wchar_t* format, const ZVDateFields& fields);

enum class NameLength : int32_t
{
    Full,
    Short,
};

// The name of the month or of the day of the week of valid fields, in English when flags holds ZVDate::EnglishNames.
ZVString GetMonthName(const ZVDateFields& fields, NameLength length, int32_t flags);
ZVString GetDayName(const ZVDateFields& fields, NameLength length, int32_t flags);
}
