#pragma once

#include <cstdint>

// The priority levels of threads, and what each means to the system. Any other level counts as the normal one.
namespace ZVThreadPriority
{
inline constexpr int32_t Idle = -15;
inline constexpr int32_t Lowest = -2;
inline constexpr int32_t BelowNormal = -1;
inline constexpr int32_t Normal = 0;
inline constexpr int32_t AboveNormal = 1;
inline constexpr int32_t Highest = 2;
inline constexpr int32_t TimeCritical = 15;

// A scheduling policy of the system, a SCHED_ constant, and the static priority within it.
struct Scheduling
{
    int Policy;
    int StaticPriority;
};

// The scheduling that a thread of a level is created with.
Scheduling SchedulingOf(int32_t level);

// The nice value of a level, in a process that may raise priorities or in one that may not. The idle level has none of its own,
// because its policy does the work.
int NiceValueOf(int32_t level, bool mayRaise);

// Gives the calling thread the priority of a level. False when the system refuses; the thread then goes on as it was.
bool ApplyToCaller(int32_t level);
}
