#pragma once

#include <cstdlib>
#include <ctime>

// Sets the time zone of the process while it lives, and UTC afterwards.
struct TimeZone
{
    // Rules of POSIX, which need no time zone data.
    static constexpr const char* Berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    static constexpr const char* NewYork = "EST5EDT,M3.2.0,M11.1.0";
    static constexpr const char* Sydney = "AEST-10AEDT,M10.1.0,M4.1.0/3";

    explicit TimeZone(const char* rule) { Set(rule); }
    ~TimeZone() { Set("UTC0"); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void Set(const char* rule)
    {
        setenv("TZ", rule, 1);
        tzset();
    }
};
