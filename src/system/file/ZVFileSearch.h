#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

#include <atomic>
#include <cstdint>

// Collects the paths of a folder's files, in the order of ZVFileFinder, with the content of a folder directly after it. The
// folder is walked once, when a result is first asked for, so everything has to be set before. A folder that does not exist has
// no files.
class ZVFileSearch
{
public:
    // An empty filter lets all files pass. A recursive search follows symbolic links and enters each folder once.
    explicit ZVFileSearch(const ZVString& folder, const ZVString& filter = ZVString(), bool recursive = false);
    ZVFileSearch(const ZVFileSearch&) = delete;
    ZVFileSearch& operator=(const ZVFileSearch&) = delete;

    // Lets files with that extension pass. It is given without its "." and compared with case folded; an empty one is ignored.
    void AddFilter(const ZVString& extension);
    void AddFilters(const ZVStringArray& extensions);
    // Leaves out entries whose mode, in the system's bits, has a bit of the mask.
    void SetSkipMask(uint32_t mask) { m_skipMask = mask; }
    // Makes folders results too; their paths end in "/".
    void SetIncludeFolders(bool include) { m_includesFolders = include; }
    // Leaves out folders whose names begin with "." and are longer than that.
    void SetSkipHiddenFolders(bool skip) { m_skipsHiddenFolders = skip; }
    // Ends the walk with that many results.
    void SetMaximumResults(int32_t count) { m_maximumResults = count; }
    // A flag with which another thread can end the walk. It outlives the search; null for none.
    void SetCancelFlag(const std::atomic<bool>* flag) { m_cancelFlag = flag; }
    // An array for the results, which outlives the search; null for the search's own.
    void SetResultArray(ZVStringArray* array) { m_results = array != nullptr ? array : &m_ownResults; }

    const ZVStringArray& GetResults();
    // Appends the paths to an array and returns its count.
    int32_t GetResults(ZVStringArray& array);
    // The size of all files found, in bytes.
    int64_t GetTotalSize();

private:
    class Walk;

    void WalkOnce();
    bool Passes(const ZVString& path) const;
    bool IsCancelled() const { return m_cancelFlag != nullptr && m_cancelFlag->load(); }
    bool IsFull() const { return m_results->GetCount() >= m_maximumResults; }

    bool m_isWalked = false;
    ZVString m_folder;
    ZVStringArray m_filters;
    uint32_t m_skipMask = 0;
    bool m_isRecursive;
    bool m_includesFolders = false;
    bool m_skipsHiddenFolders = false;
    int32_t m_maximumResults = INT32_MAX;
    const std::atomic<bool>* m_cancelFlag = nullptr;
    ZVStringArray m_ownResults;
    ZVStringArray* m_results = &m_ownResults;
    int64_t m_totalSize = 0;
};
