#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <atomic>
#include <cstdint>

// Collects the paths of a folder's files, in the order of ZVFileFinder, with the content of a folder directly behind it. The
// folder is walked once, when a result is first asked for; what is set must be set before. A folder that does not exist has no
// files.
class ZVFileSearch
{
public:
    // An empty filter lets all files pass. A recursive search follows symbolic links, and enters each folder once.
    explicit ZVFileSearch(const ZVString& folder, const ZVString& filter = ZVString(), bool recursive = false);
    ZVFileSearch(const ZVFileSearch&) = delete;
    ZVFileSearch& operator=(const ZVFileSearch&) = delete;

    // Lets files with that extension pass, given without its "." and compared with case folded; an empty one is not stored.
    void AddFilter(const ZVString& extension);
    void AddFilters(const ZVStringArray& extensions);
    // Leaves out entries whose mode, as the system has it, has a bit of the mask.
    void SetSkipMask(uint32_t mask) { m_skipMask = mask; }
    // Folders are results too; their paths end in "/".
    void SetIncludeFolders(bool include) { m_includesFolders = include; }
    // Leaves out folders whose names begin with "." and have more characters.
    void SetSkipHiddenFolders(bool skip) { m_skipsHiddenFolders = skip; }
    // Another thread ends the walk by setting the flag, which outlives the search; null is none.
    void SetCancelFlag(const std::atomic<bool>* flag) { m_cancelFlag = flag; }
    // The results go to another array, which outlives the search; null is its own again.
    void SetResultArray(ZVStringArray* array) { m_results = array != nullptr ? array : &m_ownResults; }

    const ZVStringArray& GetResults();
    // Appends the paths and gives the count of the array.
    int32_t GetResults(ZVStringArray& array);
    // The size of all files found, in bytes.
    int64_t GetTotalSize();

private:
    class Walk;

    void WalkOnce();
    bool Passes(const ZVString& path) const;
    bool IsCancelled() const { return m_cancelFlag != nullptr && m_cancelFlag->load(); }

    bool m_isWalked = false;
    ZVString m_folder;
    ZVStringArray m_filters;
    uint32_t m_skipMask = 0;
    bool m_isRecursive;
    bool m_includesFolders = false;
    bool m_skipsHiddenFolders = false;
    const std::atomic<bool>* m_cancelFlag = nullptr;
    ZVStringArray m_ownResults;
    ZVStringArray* m_results = &m_ownResults;
    int64_t m_totalSize = 0;
};
