#pragma once

#include "system/shield/ZVShieldRules.h"

// The kernel's filter of system calls: what no task of ours needs and what leads out of a process is refused with EPERM, and the
// kernel writes a line about it to the log of the system. Calls for another kind of program than this, as those with 32 bits on a
// machine of 64, are all refused.
namespace ZVCallFilter
{
// Filters the calls of all threads of the process and of all that it starts; the process has given up gaining rights before. 0, or
// the system's reason, which is ENOTSUP on a kind of machine that the filter does not know.
int Install(const ZVShieldRules& rules);
}
