#pragma once

#include "caller/catalog/CCatalog.h"
#include "caller/commands/CFilmTask.h"
#include "caller/process/CWorkerPool.h"
#include "caller/scan/CFolderWalk.h"
#include "caller/scan/CProgressLine.h"

#include <set>
#include <vector>

// What a scan does.
struct CScanOptions
{
    size_t Jobs = 1;
    bool WithPictures = false;
    bool WithBars = false;
    bool RetryFailed = false;
};

// What came of it.
struct CScanCounts
{
    int64_t Done = 0;
    int64_t Failed = 0;
    int64_t Unchanged = 0;
    int64_t Vanished = 0;
};

// Walks through folders and has the workers look at each film that the catalog does not have as it is now. A film that fails is a row
// with its reason. Rows come into the catalog as they are found out, so it can end at any moment and goes on there the next time.
class CScan
{
public:
    CScan(CCatalog& catalog, const CCallerOptions& caller, const CScanOptions& options);

    // Scans folders, given as absolute paths, until all is done or the user interrupts it.
    CScanCounts Run(const std::vector<std::filesystem::path>& folders);

private:
    struct Film;

    void ScanFolder(const std::filesystem::path& folder);
    bool Begin(const CFolderWalk::Film& found);
    void StartNextTask(const std::shared_ptr<Film>& film);
    void EndTask(const std::shared_ptr<Film>& film, const CFilmTask& task, const CWorkerOutcome& outcome);
    void Store(const Film& film);
    void CommitSometimes();

    CCatalog& m_catalog;
    const CCallerOptions& m_caller;
    CScanOptions m_options;
    CWorkFolder m_folder;
    CWorkerPool m_pool;
    CProgressLine m_progress;
    CScanCounts m_counts;
    std::set<std::string> m_unreadable;
    std::vector<bool> m_isThere;  // by the numbers of the rows
    CWorkerRun::Clock::time_point m_nextCommit {};
};
