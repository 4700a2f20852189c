#pragma once

#include "core/string/ZVString.h"

#include <filesystem>

// The archive of a component, a zip file or a tar file that may be packed with xz. It comes from a server, so nothing in it is
// trusted. Names are UTF-8 whatever the locale of the process is.
namespace ZVComponentArchive
{
// Reads the whole archive without writing anything. False, with the reason in the log, when it is damaged or cut, when
// ZVArchiveNames refuses one of its entries, and when it is larger than any component or does not fit on the disk of the folder
// that it is meant for.
bool Check(const ZVString& archive, const ZVString& folder);

// Unpacks an archive into a folder, which must exist and be empty.
bool Unpack(const ZVString& archive, const std::filesystem::path& folder);
}
