#pragma once

#include "core/string/ZVString.h"

// Where the library keeps files that outlive a process: the log and the settings.
namespace CDataFolder
{
// The data folder: the given directory or, if that is empty, ".zivora/Generic/" in the home folder. Empty if there is no home
// folder either; then nothing is kept.
ZVString Find(const wchar_t* dataDirectory);

// The directory with a "/" at the end; an empty text stays empty.
ZVString WithClosingSlash(const ZVString& directory);

// Creates the missing folders of a file, with the user's umask. False, with errno set, if one cannot be created.
bool MakeFoldersOf(const char* filePath);
}
