#pragma once

#include <cstdint>

// Moments on the clock that counts from the start of the machine, in nanoseconds. It runs on while the machine sleeps and is
// never set.
namespace ZVProcessTime
{
int64_t GetNow();

// When this process was started, exact to the system's tick of 10 ms and never too late; INT64_MAX when the system does not tell.
int64_t GetProcessStart();
}
