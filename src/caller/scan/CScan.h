#pragma once

#include "caller/catalog/CCatalog.h"
#include "caller/commands/CFilmTask.h"
#include "caller/process/CWorkerPool.h"
#include "caller/scan/CFolderWalk.h"
#include "caller/scan/CProgressLine.h"
#include "caller/scan/CScanQueue.h"

#include <string>
#include <vector>

// What a scan does.
struct CScanOptions
{
    size_t Jobs = 1;
    // All that is known but black bars and pictures is always asked for.
    bool WithPictures = false;
    bool WithBars = false;
};

// What came of it, in films.
struct CScanCounts
{
    int64_t Done = 0;  // that workers looked at, failed ones too
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
    ~CScan();

    // Scans folders, given as absolute paths, until all is done or the user interrupts it.
    CScanCounts Run(const std::vector<std::filesystem::path>& folders);

private:
    struct Film;

    void RunFolder(const std::filesystem::path& folder);
    bool WalkOn(CFolderWalk& walk);
    void See(const CFolderWalk::Film& found);
    void StartFilms();
    void StartTask(const std::shared_ptr<Film>& film);
    void EndTask(const std::shared_ptr<Film>& film, const CFilmTask& task, const CWorkerOutcome& outcome);
    void Store(const Film& film);
    void MarkVanished(const std::filesystem::path& folder);
    void CommitSometimes();

    CCatalog& m_catalog;
    const CCallerOptions& m_caller;
    CScanOptions m_options;
    std::vector<CFilmTask::Kind> m_tasks;
    CWorkFolder m_folder;
    CScanQueue m_queue;
    CWorkerPool m_pool;
    CProgressLine m_progress;
    CScanCounts m_counts;
    std::vector<std::string> m_unreadable;
    std::vector<bool> m_isThere;  // by the numbers of the rows
    CWorkerRun::Clock::time_point m_nextCommit {};
};
