#include "core/date/ZVDate.h"

#include "core/date/ZVCalendar.h"
#include "core/date/ZVDatePrecision.h"
#include "core/date/ZVTimeUnits.h"

#include <cmath>
#include <ctime>

namespace
{
constexpr int64_t SecondsPerDay = ZVTimeUnits::SecondsPerDay;
constexpr int64_t MicrosecondsPerSecond = 1'000'000;
constexpr double NanosecondsPerDay = 1e9 * ZVTimeUnits::SecondsPerDay;

// The seconds from 1601-01-01 to 1970-01-01, and the number of file time units in a second.
constexpr int64_t FileTimeEpochSeconds = 11644473600;
constexpr int64_t FileTimePerSecond = 10'000'000;

// A clock always knows the time, so the value gets one. 0.0 for a day whose year does not fit into 16 bits.
double WithTimeOfDay(int64_t dayNumber, double fraction)
{
    return ZVDate::WithPrecision(static_cast<double>(dayNumber) + fraction, ZVDatePrecision::Time);
}
}

double ZVDate::Now()
{
    timespec now {};
    clock_gettime(CLOCK_REALTIME, &now);
    const double nanoseconds = static_cast<double>(now.tv_sec % SecondsPerDay) * 1e9 + static_cast<double>(now.tv_nsec);
    return ToLocal(WithTimeOfDay(now.tv_sec / SecondsPerDay + static_cast<int64_t>(UnixEpoch), nanoseconds / NanosecondsPerDay));
}

int64_t ZVDate::ToUnix(double value, bool asUTC)
{
    if (IsEmpty(value))
        return 0;
    const double moment = asUTC ? ToUTC(value) : value;
    return static_cast<int64_t>(std::floor((moment - UnixEpoch) * static_cast<double>(SecondsPerDay) + 0.5));
}

double ZVDate::FromUnix(int64_t seconds)
{
    const int64_t days = ZVCalendar::FloorDivide(seconds, SecondsPerDay);
    const double fraction = static_cast<double>(seconds - days * SecondsPerDay) / static_cast<double>(SecondsPerDay);
    return WithTimeOfDay(days + static_cast<int64_t>(UnixEpoch), fraction);
}

bool ZVDate::ToFileTime(double value, uint64_t& fileTime)
{
    fileTime = 0;
    if (IsEmpty(value))
        return false;
    const int64_t seconds = ToUnix(value) + FileTimeEpochSeconds;
    if (seconds <= 0)
        return false;
    // A year of 16 bits keeps this product within 64 bits.
    fileTime = static_cast<uint64_t>(seconds) * FileTimePerSecond;
    return true;
}

double ZVDate::FromFileTime(uint64_t fileTime)
{
    if (fileTime == 0)
        return 0.0;
    constexpr uint64_t UnitsPerDay = static_cast<uint64_t>(SecondsPerDay * FileTimePerSecond);
    constexpr int64_t EpochDay = static_cast<int64_t>(UnixEpoch) - FileTimeEpochSeconds / SecondsPerDay;
    const double fraction = static_cast<double>(fileTime % UnitsPerDay) / static_cast<double>(UnitsPerDay);
    return WithTimeOfDay(static_cast<int64_t>(fileTime / UnitsPerDay) + EpochDay, fraction);
}

timeval ZVDate::ToTimeval(double value)
{
    timeval time {};
    if (IsEmpty(value))
        return time;
    const double day = std::floor(value + Tolerance);
    const double fraction = value - day;
    double microseconds = (day - UnixEpoch) * static_cast<double>(SecondsPerDay * MicrosecondsPerSecond);
    if (fraction >= LeastTime)
        microseconds += fraction * static_cast<double>(SecondsPerDay * MicrosecondsPerSecond);
    const int64_t whole = std::llround(microseconds);
    time.tv_sec = ZVCalendar::FloorDivide(whole, MicrosecondsPerSecond);
    time.tv_usec = whole - time.tv_sec * MicrosecondsPerSecond;
    return time;
}
