#pragma once

#include "core/string/ZVString.h"

// Where the library keeps what outlives a process: the log and the settings.
namespace CDataFolder
{
// The data folder: the directory given, and when that is empty ".zivora/Generic/" in the home folder. Empty when there is no
// home folder either; then nothing is kept.
ZVString Find(const wchar_t* dataDirectory);

// The directory with a "/" at its end; an empty text stays empty.
ZVString WithClosingSlash(const ZVString& directory);

// Makes the folders that a file stands in, as far as they are missing, under the user's umask. False, and errno, when one
// cannot be made.
bool MakeFoldersOf(const char* filePath);
}
