#pragma once

#include "system/shield/ZVShieldRules.h"

// Locks the process before it works on what strangers made, so that a decoder that is taken over reaches no more than the task
// needs. The lock is made of the kernel's own means, Landlock for files, TCP and signals, and seccomp for system calls. It holds
// for all that the process starts, and nothing takes it away again.
//
// The variable ZV_SHIELD chooses how: "off" for no lock, "require" for a task that fails where the lock is not whole. Otherwise the
// kernel does what it can, and what it cannot costs a line in the log.
namespace ZVShield
{
enum class Mode
{
    Off,
    BestEffort,
    Required,
};

// What ZV_SHIELD says. Another value than those above is logged and not followed.
Mode ReadMode();

// Locks the calling process, which has only one thread. False, with the reason in the log, when it must not go on.
bool Lock(const ZVShieldRules& rules, Mode mode);
}
