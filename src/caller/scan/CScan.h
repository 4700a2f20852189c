#pragma once

#include "caller/catalog/CCatalog.h"
#include "caller/scan/CFolderWalk.h"
#include "caller/scan/CProgressLine.h"
#include "caller/scan/CScanQueue.h"
#include "caller/tasks/CFilmRunner.h"

#include <string>
#include <vector>

// What a scan does.
struct CScanOptions
{
    CTaskSet Tasks;           // what is to be known of each film
    bool TriesAgain = false;  // tasks that failed, too
};

// What a film still needs that has a row in a catalog: nothing when all is known of it as it is now. Of a file with another content
// everything is found out anew that was known of the old one.
CTaskSet GetTasksFor(const CFolderWalk::Film& found, const CCatalogRow& row, const CScanOptions& options);

// What came of it, in films.
struct CScanCounts
{
    int64_t Done = 0;  // that workers looked at, failed ones too
    int64_t Failed = 0;
    int64_t Unchanged = 0;
    int64_t FailedBefore = 0;  // of the unchanged
    int64_t Vanished = 0;
    int64_t Unreadable = 0;  // files and folders that could not be looked into
};

// Walks through folders and has the workers look at each film that the catalog does not have as it is now. A film that fails is a row
// with its reason. Rows come into the catalog as they are found out, so it can end at any moment and goes on there the next time.
class CScan
{
public:
    CScan(CCatalog& catalog, const CWorkerSettings& settings, const CScanOptions& options);

    // Scans folders, given as absolute paths, until all is done or the user interrupts it.
    CScanCounts Run(const std::vector<std::filesystem::path>& folders);

private:
    bool WalkOn(CFolderWalk& walk);
    void See(const CFolderWalk::Film& found);
    void StartFilms();
    void Store(const CFindings& findings, const CFileIdentity& identity);
    void MarkVanished(const std::filesystem::path& folder);
    void CommitSometimes();

    CCatalog& m_catalog;
    CScanOptions m_options;
    CScanQueue m_queue;
    CFilmRunner m_runner;
    CProgressLine m_progress;
    CScanCounts m_counts;
    std::vector<std::string> m_unreadable;
    std::vector<bool> m_isThere;  // by the numbers of the rows
    CWorkerRun::Clock::time_point m_nextCommit {};
};
