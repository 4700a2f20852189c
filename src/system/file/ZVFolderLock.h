#pragma once

#include "system/library/ZVDescriptor.h"

#include <sys/file.h>

// Locks on an open folder, between processes and between the threads of one. A lock belongs to the open folder: it ends with its
// descriptor, and so with its process, however that ends. The operations are LOCK_SH and LOCK_EX of flock(2); a lock that is held
// already is given up for the new one. errno tells why a lock was not taken, EWOULDBLOCK that others have theirs.
namespace ZVFolderLock
{
bool Try(const ZVDescriptor& folder, int operation);
// Waits for up to ten seconds, which is longer than anybody works under a lock.
bool Wait(const ZVDescriptor& folder, int operation);
}
