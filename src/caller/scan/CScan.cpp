#include "caller/scan/CScan.h"

#include "caller/output/Messages.h"
#include "caller/process/CSignals.h"

#include <algorithm>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using namespace std::chrono_literals;

// So many entries are looked at before the workers get their turn.
constexpr int WalkedAtOnce = 256;

// What a kill can cost is made again.
constexpr auto CommitInterval = 1s;

bool IsBelow(const std::string& path, const std::string& folder)
{
    return path == folder || path.starts_with(folder.ends_with('/') ? folder : folder + '/');
}
}

CTaskSet GetTasksFor(const CFolderWalk::Film& found, const CCatalogRow& row, const CScanOptions& options)
{
    if (row.Identity != found.Identity)
        return options.Tasks | row.Done;
    const CTaskSet known = options.TriesAgain ? row.Done.Without(row.Failed) : row.Done;
    return options.Tasks.Without(row.IsSound ? known | GetPictureTasks() : known);
}

CScan::CScan(CCatalog& catalog, const CWorkerSettings& settings, const CScanOptions& options)
    : m_catalog(catalog), m_options(options), m_runner(settings, CatalogPicture)
{
}

CScanCounts CScan::Run(const std::vector<fs::path>& folders)
{
    const auto onError = [this](const fs::path& path, const std::string& reason)
    {
        ++m_counts.Unreadable;
        m_unreadable.push_back(path);
        m_progress.Say("zivora: " + MakePlain(ToUTF8(path)) + ": " + reason);
    };
    CFolderWalk walk(folders, onError);
    bool isWalking = true;
    // The workers at work are killed with the runner, and their films are looked at by the next scan.
    while ((isWalking || m_queue.GetCount() > 0 || m_runner.GetCount() > 0) && !CSignals::IsInterrupted())
    {
        StartFilms();
        if (isWalking)
            isWalking = WalkOn(walk);
        const bool isBusy = isWalking && (m_runner.HasRoom() || m_queue.GetCount() < WalkedAtOnce);
        m_runner.Wait(isBusy ? 0ms : 200ms);
        CommitSometimes();
        m_progress.Show({m_counts.Done, m_counts.Failed,
                         m_counts.Done + m_queue.GetCount() + static_cast<int64_t>(m_runner.GetCount()), !isWalking});
    }
    if (!CSignals::IsInterrupted())
        for (const fs::path& folder : folders)
            MarkVanished(folder);
    m_catalog.Commit();
    m_progress.Clear();
    return m_counts;
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
    if (!row)
        return m_queue.Add({found, m_options.Tasks});
    m_isThere.resize(std::max(m_isThere.size(), static_cast<size_t>(row->ID) + 1));
    m_isThere[static_cast<size_t>(row->ID)] = true;
    const CTaskSet tasks = GetTasksFor(found, *row, m_options);
    if (!tasks.IsEmpty())
        return m_queue.Add({found, tasks});
    ++m_counts.Unchanged;
    m_counts.FailedBefore += row->Failed.IsEmpty() ? 0 : 1;
    if (row->HasVanished)
        m_catalog.MarkPresent(row->ID);
}

void CScan::StartFilms()
{
    while (m_runner.HasRoom())
    {
        const std::optional<CScanQueue::Entry> entry = m_queue.Take();
        if (!entry)
            return;
        m_runner.Start(entry->Film.Path, entry->Tasks,
                       [this, identity = entry->Film.Identity](const CFindings& findings) { Store(findings, identity); });
    }
}

// A film that failed because its disk went away, or that changed meanwhile, is looked at by the next scan.
void CScan::Store(const CFindings& findings, const CFileIdentity& identity)
{
    if (!findings.Errors.empty())
    {
        const std::optional<CFileIdentity> now = FindFilm(findings.Film.Path);
        if (!now || *now != identity)
        {
            ++m_counts.Unreadable;
            m_progress.Say("zivora: " + MakePlain(ToUTF8(findings.Film.Path)) + (now ? ": it changed" : ": it went away") +
                           " while it was looked at");
            return;
        }
    }
    m_catalog.Store(findings, identity);
    ++m_counts.Done;
    m_counts.Failed += findings.Errors.empty() ? 0 : 1;
}

// What lies in a folder that could not be read may still be there.
void CScan::MarkVanished(const fs::path& folder)
{
    const auto isThere = [this](int64_t id, const std::string& path)
    {
        if (static_cast<size_t>(id) < m_isThere.size() && m_isThere[static_cast<size_t>(id)])
            return true;
        struct stat status;
        return std::ranges::any_of(m_unreadable, [&](const std::string& unreadable) { return IsBelow(path, unreadable); }) ||
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
