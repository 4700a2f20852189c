#pragma once

#include "system/shield/ZVShieldRules.h"

// The kernel's guard of files, which also keeps a process from TCP and from signals to others where the kernel is new enough.
namespace ZVLandlock
{
// Locks the calling thread and all that it starts; it has given up gaining rights before. 0, or the system's reason: ENOSYS for a
// kernel without the guard, EOPNOTSUPP for one in which it is switched off or cannot let files be moved between folders.
int Restrict(const ZVShieldRules& rules);
}
