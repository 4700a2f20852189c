#include "caller/plan/CShardWork.h"

#include "caller/output/Messages.h"
#include "caller/plan/ShardResults.h"
#include "caller/process/CSignals.h"
#include "caller/scan/CFolderWalk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using namespace std::chrono_literals;
}

CShardWork::CShardWork(const CPlan& plan, int64_t shard, const CWorkerSettings& settings)
    : m_plan(plan), m_films(plan, shard), m_runner(settings, CatalogPicture)
{
}

CShardCounts CShardWork::Run()
{
    if (IsFinished(m_plan, m_films.GetShard()))
        return {.Before = m_films.GetCount(), .IsFinished = true};
    TakeLock();
    CheckFolders();
    m_has = ReadResults(m_plan, m_films, [](const CFilmResult&, const CPlannedFilm&) {});
    m_counts.Before = std::ranges::count(m_has, true);
    m_results.emplace(m_plan, m_films.GetShard());
    while (!IsDone())
    {
        // The workers at work are killed with the runner, and their films are looked at by the next run.
        if (CSignals::IsInterrupted())
            return m_counts;
        // By another process, where nothing can be locked.
        if (IsFinished(m_plan, m_films.GetShard()))
        {
            m_counts.IsFinished = true;
            return m_counts;
        }
        StartFilms();
        m_runner.Wait(200ms);
        m_progress.Show({m_counts.Done + m_counts.Gone, m_counts.Failed, m_films.GetCount() - m_counts.Before, true});
    }
    m_counts.IsFinished = std::ranges::find(m_has, false) == m_has.end();
    if (m_counts.IsFinished)
    {
        m_results->Finish();
        MarkFinished(m_plan, m_films.GetShard());
    }
    return m_counts;
}

// A shared file system may have no locks, or ask for the right to write.
void CShardWork::TakeLock()
{
    const fs::path path = m_plan.GetShardFile(m_films.GetShard());
    m_lock = CDescriptor(open(path.c_str(), O_RDWR | O_CLOEXEC));
    if (!m_lock.IsOpen())
        m_lock = CDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (flock(m_lock.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        throw std::runtime_error("another process is at work on the shard " + std::to_string(m_films.GetShard()));
}

// On a machine that does not have the library mounted, all films would seem to be gone.
void CShardWork::CheckFolders() const
{
    std::error_code error;
    for (const fs::path& folder : m_plan.GetFacts().Folders)
        if (!fs::is_directory(folder, error) || fs::is_empty(folder, error))
            throw std::runtime_error("the folder " + folder.string() + " of the plan is not there or empty on this machine");
}

void CShardWork::StartFilms()
{
    for (; m_next < m_films.GetCount() && m_runner.HasRoom(); ++m_next)
        if (!m_has[static_cast<size_t>(m_next)])
            Start(m_next);
}

void CShardWork::Start(int64_t number)
{
    const std::optional<CPlannedFilm> film = m_films.Get(number);
    if (!film || film->Tasks.IsEmpty())
        return LeaveOut(m_plan.GetShardFile(m_films.GetShard()), "line " + std::to_string(number + 1) + " is damaged");
    struct stat status;
    if (stat(film->Path.c_str(), &status) != 0 && errno != ENOENT && errno != ENOTDIR)
        return LeaveOut(film->Path, strerror(errno));
    CFilmResult result;
    result.Number = number;
    result.Findings.Film.Path = film->Path;
    const std::optional<CFileIdentity> identity = FindFilm(film->Path);
    if (!identity)
    {
        CheckFolders();
        result.IsGone = true;
        return Store(std::move(result));
    }
    result.Identity = *identity;
    m_runner.Start(film->Path, film->Tasks,
                   [this, result](const CFindings& findings) mutable
                   {
                       // Its disk may have gone away, of which the film says nothing.
                       const std::string& path = findings.Film.Path;
                       if (!findings.Errors.empty() && FindFilm(path) != std::optional(result.Identity))
                           return LeaveOut(path, "it changed or went away while it was looked at");
                       result.Findings = findings;
                       Store(std::move(result));
                   });
}

void CShardWork::LeaveOut(const fs::path& path, const std::string& reason)
{
    ++m_counts.Unreachable;
    SayFailure(path, reason);
}

void CShardWork::Store(CFilmResult result)
{
    m_results->Write(result);
    m_has[static_cast<size_t>(result.Number)] = true;
    if (result.IsGone)
        ++m_counts.Gone;
    else
        ++m_counts.Done;
    m_counts.Failed += result.Findings.Errors.empty() ? 0 : 1;
}
