#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <cstdint>

// The files of one folder of a disc.
class BlurayDirectoryList
{
public:
    // Lists a folder below a path, or the path itself. With an extension only its files count. A folder that is not there has none.
    BlurayDirectoryList(const ZVString& path, const ZVString& subFolder, const ZVString& extension);
    virtual ~BlurayDirectoryList() = default;
    BlurayDirectoryList(const BlurayDirectoryList&) = delete;
    BlurayDirectoryList& operator=(const BlurayDirectoryList&) = delete;

    // The size of the files with an extension, in any case, or without one of all files, in bytes.
    int64_t GetDirectorySize(const ZVString& extension) const;

    ZVString Path;        // ends in a slash
    ZVString SubFolder;   // without slashes at its start
    ZVStringArray Files;  // full paths
    int64_t TotalSize = 0;
};
