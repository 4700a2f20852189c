#pragma once

#include "system/file/ZVFileInfo.h"

#include <cstdint>
#include <glob.h>

// What ZVFileFinder looks for with a path.
enum class ZVFind
{
    Matches,        // what the path fits as a pattern, or the content of a folder if the path ends in "/"
    FolderContent,  // the content of the folder in any case
};

// Lists the content of a folder, or the files that a pattern fits, in the order of glob: sorted as the locale sorts. Names that
// begin with "." are not listed. Only the last step of a pattern can have the wild cards "*" and "?", and only while the tools
// library is there to find them; every other character stands for itself.
class ZVFileFinder
{
public:
    ZVFileFinder() = default;
    ~ZVFileFinder() { Release(); }
    ZVFileFinder(const ZVFileFinder&) = delete;
    ZVFileFinder& operator=(const ZVFileFinder&) = delete;

    // Drops what was found before and looks anew. True even if nothing is found; false for an empty path, and if the system
    // fails, which is logged.
    bool Find(const ZVFilename& pattern, ZVFind what = ZVFind::Matches);
    bool IsFound() const { return m_isFound; }

    // The next entry with its status; one that is gone by now is left out. False at the end.
    bool GetNext(ZVFileInfo& info);

private:
    void Release();

    bool m_isFound = false;
    ZVFilename m_pattern;
    size_t m_next = 0;
    glob_t m_result {};
};
