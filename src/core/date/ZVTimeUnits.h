#pragma once

#include <cstdint>

// How many units of time a larger one has, on a day without a leap second.
namespace ZVTimeUnits
{
inline constexpr int32_t SecondsPerMinute = 60;
inline constexpr int32_t MinutesPerHour = 60;
inline constexpr int32_t SecondsPerHour = SecondsPerMinute * MinutesPerHour;
inline constexpr int32_t HoursPerDay = 24;
inline constexpr int32_t SecondsPerDay = SecondsPerHour * HoursPerDay;
inline constexpr int32_t MillisecondsPerSecond = 1000;
}
