#include "caller/scan/CScan.h"

#include "caller/commands/CSignals.h"
#include "caller/output/FilmBlock.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using namespace std::chrono_literals;

// So many entries are looked at before the workers get their turn.
constexpr int WalkedAtOnce = 256;

// What a kill can cost is made again.
constexpr auto CommitInterval = 1s;

constexpr int64_t TaskBit(CFilmTask::Kind task)
{
    return int64_t {1} << static_cast<int>(task);
}

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
}

// A film that workers look at, one task after the other.
struct CScan::Film
{
    CFolderWalk::Film Found;
    fs::path Picture = {};
    CFilm Facts;
    size_t NextTask = 0;
    int64_t TasksDone = 0;
    std::string Error = {};
};

CScan::CScan(CCatalog& catalog, const CCallerOptions& caller, const CScanOptions& options)
    : m_catalog(catalog),
      m_caller(caller),
      m_options(options),
      m_tasks {CFilmTask::Kind::Basic},
      m_pool(caller.Worker, options.Jobs, m_folder)
{
    if (options.WithBars)
        m_tasks.push_back(CFilmTask::Kind::Bars);
    if (options.WithPictures)
        m_tasks.push_back(CFilmTask::Kind::Picture);
}

CScan::~CScan() = default;

CScanCounts CScan::Run(const std::vector<fs::path>& folders)
{
    for (const fs::path& folder : folders)
        if (!CSignals::IsInterrupted())
            RunFolder(folder);
    m_catalog.Commit();
    return m_counts;
}

void CScan::RunFolder(const fs::path& folder)
{
    const auto onError = [this](const fs::path& path, const std::string& reason)
    {
        m_unreadable.push_back(path);
        m_progress.Say("zivora: " + MakePlain(ToUTF8(path)) + ": " + reason);
    };
    CFolderWalk walk(folder, onError);
    bool isWalking = true;
    while (isWalking || m_queue.GetCount() > 0 || m_pool.GetRunningCount() > 0)
    {
        if (CSignals::IsInterrupted())
            return m_pool.KillAll();
        StartFilms();
        if (isWalking)
            isWalking = WalkOn(walk);
        const bool isBusy = isWalking && (m_pool.HasRoom() || m_queue.GetCount() < WalkedAtOnce);
        m_pool.Wait(isBusy ? 0ms : 200ms);
        CommitSometimes();
        m_progress.Show({m_counts.Done, m_counts.Failed,
                         m_counts.Done + m_queue.GetCount() + static_cast<int64_t>(m_pool.GetRunningCount()), !isWalking});
    }
    MarkVanished(folder);
}

// False when there is nothing more to find.
bool CScan::WalkOn(CFolderWalk& walk)
{
    CFolderWalk::Film found;
    for (int count = 0; count < WalkedAtOnce; ++count)
    {
        if (!walk.GetNext(found))
            return false;
        See(found);
    }
    return true;
}

void CScan::See(const CFolderWalk::Film& found)
{
    const std::optional<CCatalogRow> row = m_catalog.Find(found.Path);
    int64_t wanted = 0;
    for (const CFilmTask::Kind task : m_tasks)
        wanted |= TaskBit(task);
    if (row)
    {
        m_isThere.resize(std::max(m_isThere.size(), static_cast<size_t>(row->ID) + 1));
        m_isThere[static_cast<size_t>(row->ID)] = true;
    }
    if (!row || row->Identity != found.Identity || (row->Tasks & wanted) != wanted)
        return m_queue.Add(found);
    ++m_counts.Unchanged;
    if (row->HasVanished)
        m_catalog.MarkPresent(row->ID);
}

void CScan::StartFilms()
{
    CFolderWalk::Film found;
    while (m_pool.HasRoom() && m_queue.Take(found))
    {
        const auto film = std::make_shared<Film>(Film {.Found = found, .Facts = {.Path = found.Path}});
        StartTask(film);
    }
}

void CScan::StartTask(const std::shared_ptr<Film>& film)
{
    const CFilmTask::Kind kind = m_tasks[film->NextTask++];
    if (kind == CFilmTask::Kind::Picture)
        film->Picture = m_folder.GetPath() /
                        ("thumb" + std::to_string(m_counts.Done) + "-" + std::to_string(m_pool.GetRunningCount()) + ".jpg");
    const auto task = std::make_shared<CFilmTask>(
        CFilmTask::Request {.What = kind, .Film = film->Found.Path, .Picture = film->Picture}, m_caller, m_folder);
    m_pool.Start(task->GetRequest(),
                 [this, film, task](const CWorkerOutcome& outcome, const CWorkerRequest&) { EndTask(film, *task, outcome); });
}

// The next task is tried also when one has failed: a film without a picture still has its sound.
void CScan::EndTask(const std::shared_ptr<Film>& film, const CFilmTask& task, const CWorkerOutcome& outcome)
{
    if (outcome.How == CWorkerOutcome::End::Stopped)
        return;
    const std::string error = task.Finish(outcome, film->Facts);
    film->TasksDone |= TaskBit(m_tasks[film->NextTask - 1]);
    if (!error.empty())
        film->Error += (film->Error.empty() ? "" : "; ") + error;
    if (film->NextTask < m_tasks.size())
        return StartTask(film);
    Store(*film);
}

void CScan::Store(const Film& film)
{
    const std::string picture = film.Picture.empty() ? std::string() : ReadFile(film.Picture);
    m_catalog.Store({film.Facts, film.Found.Identity, film.TasksDone, film.Error, picture});
    ++m_counts.Done;
    m_counts.Failed += film.Error.empty() ? 0 : 1;
    std::error_code ignored;
    if (!film.Picture.empty())
        fs::remove(film.Picture, ignored);
}

// What lies in a folder that could not be read may still be there.
void CScan::MarkVanished(const fs::path& folder)
{
    const auto isThere = [this](int64_t id, const std::string& path)
    {
        if (static_cast<size_t>(id) < m_isThere.size() && m_isThere[static_cast<size_t>(id)])
            return true;
        struct stat status;
        return std::ranges::any_of(m_unreadable, [&](const std::string& unreadable) { return path.starts_with(unreadable); }) ||
               stat(path.c_str(), &status) == 0;
    };
    m_counts.Vanished += m_catalog.MarkVanished(folder, isThere);
}

void CScan::CommitSometimes()
{
    const auto now = CWorkerRun::Clock::now();
    if (now < m_nextCommit)
        return;
    m_nextCommit = now + CommitInterval;
    m_catalog.Commit();
}
