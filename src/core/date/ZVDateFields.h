#pragma once

#include <cstdint>
#include <ctime>

// The parts of a date, counted as the system library's broken-down time counts them.
struct ZVDateFields
{
    bool Valid = false;   // false for no date, and for a date whose year does not fit into 16 bits
    int32_t Second = 0;   // 0 to 59
    int32_t Minute = 0;   // 0 to 59
    int32_t Hour = 0;     // 0 to 23
    int32_t Day = 0;      // 1 to 31
    int32_t Month = 0;    // 0 to 11
    int32_t Year = 0;     // minus 1900
    int32_t WeekDay = 0;  // 0 is Sunday
    int32_t YearDay = 0;  // 0 is January 1

    static constexpr int32_t BaseYear = 1900;

    int32_t GetCalendarYear() const { return Year + BaseYear; }
    int32_t GetCalendarMonth() const { return Month + 1; }
};

// The fields for functions of the system library, which find out about daylight saving by themselves.
inline tm ZVBrokenDownTime(const ZVDateFields& fields)
{
    tm time {};
    time.tm_sec = fields.Second;
    time.tm_min = fields.Minute;
    time.tm_hour = fields.Hour;
    time.tm_mday = fields.Day;
    time.tm_mon = fields.Month;
    time.tm_year = fields.Year;
    time.tm_wday = fields.WeekDay;
    time.tm_yday = fields.YearDay;
    time.tm_isdst = -1;
    return time;
}
