#pragma once

#include <cstdint>

// Moments in nanoseconds since the machine started. The clock runs on while the machine sleeps, and nobody can set it.
namespace ZVProcessTime
{
int64_t GetNow();

// When this process was started, rounded down to the system's tick of 10 ms; INT64_MAX when the system does not tell.
int64_t GetProcessStart();
}
