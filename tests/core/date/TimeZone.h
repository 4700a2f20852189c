#pragma once

#include <cstdlib>
#include <ctime>

// Sets the time zone of the process for a scope, by a POSIX rule that needs no time zone data, and UTC afterwards.
struct TimeZone
{
    static constexpr const char* Berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    static constexpr const char* NewYork = "EST5EDT,M3.2.0,M11.1.0";

    explicit TimeZone(const char* rule) { setenv("TZ", rule, 1), tzset(); }
    ~TimeZone() { setenv("TZ", "UTC0", 1), tzset(); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
};
