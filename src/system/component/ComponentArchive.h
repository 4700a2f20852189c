#pragma once

#include "core/string/ZVString.h"

// The archive of a component, a zip file or a tar file that may be packed with xz. It comes from a server, so nothing in it is
// trusted.
namespace ComponentArchive
{
// Reads the whole archive without writing anything. False, and the reason in the log, when it is damaged or cut, when an entry
// has an absolute name, a ".." step or is neither a file nor a folder nor a link, when a link leaves the folder, and when it is
// larger than any component or would not fit on the disk of the folder that it is meant for.
bool Check(const ZVString& path, const ZVString& folder);

// Unpacks an archive into a folder, which must be there. The process's working folder is the folder meanwhile.
bool Unpack(const ZVString& path, const ZVString& folder);
}
