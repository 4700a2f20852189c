#pragma once

#include <cstdint>

// The Gregorian calendar, also for the time before its introduction, with a year 0 before the year 1. Months count from 1. A day
// number is the whole part of a date value: 1 is 1899-12-31 and 25569 is 1970-01-01. Any year that fits into 32 bits is valid.
namespace ZVCalendar
{
// The first and the last year that can be written with four digits.
inline constexpr int32_t FirstYear = 1;
inline constexpr int32_t LastYear = 9999;

inline constexpr int32_t MonthsPerYear = 12;
inline constexpr int32_t DaysPerWeek = 7;
inline constexpr int32_t DaysPerYear = 365;

struct Date
{
    int32_t Year = 0;
    int32_t Month = 0;
    int32_t Day = 0;
};

constexpr bool IsLeapYear(int32_t year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int32_t DaysInYear(int32_t year)
{
    return IsLeapYear(year) ? DaysPerYear + 1 : DaysPerYear;
}

constexpr int32_t DaysInMonth(int32_t year, int32_t month)
{
    constexpr int32_t Days[MonthsPerYear] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : Days[month - 1];
}

// The calendar repeats after 400 years.
inline constexpr int64_t YearsPerCycle = 400;
inline constexpr int64_t DaysPerCycle = 146097;
// The number of days from 0000-03-01, where a cycle begins, to the day with the number 0. If years begin in March, the leap day
// is the last day of its year, and the months before it have the same lengths in every year: from March on, any five months have
// 153 days.
inline constexpr int64_t CycleOffset = 693899;

constexpr int64_t FloorDivide(int64_t dividend, int64_t divisor)
{
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

// A day after the end of its month counts on into the next month.
constexpr int64_t DayNumber(int32_t year, int32_t month, int32_t day)
{
    const int64_t marchYear = static_cast<int64_t>(year) - (month <= 2 ? 1 : 0);
    const int64_t marchMonth = month <= 2 ? month + 9 : month - 3;
    const int64_t cycle = FloorDivide(marchYear, YearsPerCycle);
    const int64_t yearOfCycle = marchYear - cycle * YearsPerCycle;
    const int64_t dayOfYear = (153 * marchMonth + 2) / 5 + day - 1;
    return cycle * DaysPerCycle + yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100 + dayOfYear - CycleOffset;
}

// The date of a day number, whose year must fit into 32 bits.
constexpr Date FromDayNumber(int64_t number)
{
    const int64_t days = number + CycleOffset;
    const int64_t cycle = FloorDivide(days, DaysPerCycle);
    const int64_t dayOfCycle = days - cycle * DaysPerCycle;
    // The leap days so far, which fall on the last days of 4, 100 and 400 years, are subtracted before the years are counted.
    const int64_t yearOfCycle = (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / 146096) / 365;
    const int64_t dayOfYear = dayOfCycle - (yearOfCycle * 365 + yearOfCycle / 4 - yearOfCycle / 100);
    const int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const int64_t month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    Date date;
    date.Year = static_cast<int32_t>(cycle * YearsPerCycle + yearOfCycle + (month <= 2 ? 1 : 0));
    date.Month = static_cast<int32_t>(month);
    date.Day = static_cast<int32_t>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    return date;
}

// The day of the week from 1 (Sunday) to 7. The day with the number 1 was a Sunday.
constexpr int32_t DayOfWeek(int64_t number)
{
    return static_cast<int32_t>(number - 1 - FloorDivide(number - 1, DaysPerWeek) * DaysPerWeek) + 1;
}
}
