#pragma once

#include "core/string/ZVString.h"
#include "system/shield/ZVShieldRules.h"

#include <functional>

// Where the system keeps what programs need, and what it keeps together although programs must not have all of it.
namespace ZVSystemFolders
{
// Calls a function with each path of the system that a program may need: its libraries, its data and what describes the machine; and
// with the folders of all libraries that are loaded and of LD_LIBRARY_PATH, since not every system keeps them in the usual place. The
// text is valid during the call.
void ForEach(const std::function<void(const char* path, ZVShieldAccess access)>& function);

// Whether a folder, which ends in "/" and has no links in it, holds things that have nothing to do with each other: the user's home
// folder, those that it is in, and some of the system's. Who needs a file of it gets that file alone.
bool IsShared(const ZVString& folder);
}
