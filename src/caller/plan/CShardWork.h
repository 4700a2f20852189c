#pragma once

#include "caller/plan/CResultFile.h"
#include "caller/plan/CShardFilms.h"
#include "caller/scan/CProgressLine.h"
#include "caller/tasks/CFilmRunner.h"

#include <optional>
#include <string>
#include <vector>

// What came of a run on a shard, in films.
struct CShardCounts
{
    int64_t Done = 0;  // that workers looked at, failed ones too
    int64_t Failed = 0;
    int64_t Gone = 0;         // that are not there any more
    int64_t Before = 0;       // that others have looked at before
    int64_t Unreachable = 0;  // that could not be looked for, and are left to another run
    bool IsFinished = false;
};

// Has the workers look at the films of a shard that nobody has looked at yet. It can end at any moment, and the next run goes on there.
// Two at a time are kept apart where the files of the plan can be locked; elsewhere some films are looked at twice, which does no harm.
//
// What goes wrong is thrown as std::runtime_error with a sentence for the user.
class CShardWork
{
public:
    CShardWork(const CPlan& plan, int64_t shard, const CWorkerSettings& settings);

    // Works until all is done or the user interrupts it.
    CShardCounts Run();

private:
    void TakeLock();
    void CheckFolders() const;
    void StartFilms();
    void Start(int64_t number);
    void LeaveOut(const std::filesystem::path& path, const std::string& reason);
    void Store(CFilmResult result);
    bool IsDone() const { return m_next == m_films.GetCount() && m_runner.GetCount() == 0; }

    const CPlan& m_plan;
    CShardFilms m_films;
    CFilmRunner m_runner;
    std::optional<CResultFile> m_results;
    CDescriptor m_lock;
    CProgressLine m_progress;
    CShardCounts m_counts;
    std::vector<bool> m_has;  // results of films, by their numbers
    int64_t m_next = 0;
};
