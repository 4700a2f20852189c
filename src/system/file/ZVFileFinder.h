#pragma once

#include "system/file/ZVFileInfo.h"

#include <cstdint>
#include <glob.h>

// Lists the content of a folder, or the files that a pattern fits, in the order of glob: sorted as the locale sorts. Names that
// begin with "." are not listed. A pattern has its wild cards "*" and "?" in the last step alone, and only while the tools
// library is there to say that it has any; every other character stands for itself.
class ZVFileFinder
{
public:
    ZVFileFinder() = default;
    ~ZVFileFinder() { Release(); }
    ZVFileFinder(const ZVFileFinder&) = delete;
    ZVFileFinder& operator=(const ZVFileFinder&) = delete;

    // Finds what the pattern fits. A path that ends in "/", or any path with listFolder, gives the content of that folder. True
    // also when nothing fits; false for an empty path and when the system fails, which is logged. What was found before is
    // dropped.
    bool Find(const ZVFilename& pattern, bool listFolder = false);
    bool IsFound() const { return m_isFound; }

    // The next entry with its status. What is gone by now is left out. False at the end.
    bool GetNext(ZVFileInfo& info);

private:
    void Release();

    bool m_isFound = false;
    ZVFilename m_pattern;
    size_t m_next = 0;
    glob_t m_result {};
};
