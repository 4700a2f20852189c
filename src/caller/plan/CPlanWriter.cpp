#include "caller/plan/CPlanWriter.h"

#include "caller/files/CWholeFile.h"
#include "caller/output/Messages.h"
#include "caller/process/CSignals.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

// Lines are kept until there are so many bytes of them, since all shards of a large plan cannot be open at a time.
constexpr size_t MaximumWaiting = 0x800000;

// The name that the folder has after all links, so that what is made beside it is on the same device.
fs::path GetPlace(const fs::path& folder)
{
    fs::path place = fs::weakly_canonical(fs::absolute(folder));
    return place.has_filename() ? place : place.parent_path();
}

// Whether a walk through a folder meets all that one through the other meets. It passes hidden folders over.
bool IsMet(const fs::path& folder, const fs::path& other)
{
    const fs::path way = folder.lexically_relative(other);
    return std::ranges::none_of(way, [](const fs::path& name) { return name != "." && name.native().starts_with('.'); });
}

// Without those that lie in others, whose films would be there twice.
std::vector<fs::path> WithoutInner(const std::vector<fs::path>& folders)
{
    std::vector<fs::path> outer;
    for (const fs::path& folder : folders)
    {
        if (std::ranges::any_of(outer, [&](const fs::path& other) { return IsMet(folder, other); }))
            continue;
        std::erase_if(outer, [&](const fs::path& other) { return IsMet(other, folder); });
        outer.push_back(folder);
    }
    return outer;
}

[[noreturn]] void FailToWrite(const fs::path& path, int error)
{
    throw std::runtime_error("the plan " + path.string() + " cannot be written: " + strerror(error));
}
}

CPlanWriter::CPlanWriter(const CPlanRequest& request) : m_request(request), m_lines(static_cast<size_t>(request.Shards))
{
    m_request.Folder = GetPlace(request.Folder);
    m_request.FilmFolders = WithoutInner(request.FilmFolders);
    std::error_code error;
    if (fs::exists(CPlan::GetFactsFile(m_request.Folder), error))
        throw std::runtime_error("there is a plan in the folder " + m_request.Folder.string() + " already");
    if (fs::exists(m_request.Folder, error) && !fs::is_empty(m_request.Folder, error))
        throw std::runtime_error("the plan needs a folder of its own, and " + m_request.Folder.string() + " is not empty");
    TakePlace();
}

CPlanWriter::~CPlanWriter()
{
    std::error_code ignored;
    if (!m_part.empty())
        fs::remove_all(m_part, ignored);
}

void CPlanWriter::TakePlace()
{
    const fs::path part = m_request.Folder.string() + ".part";
    if (mkdir(part.c_str(), 0777) != 0 && errno != EEXIST)
        FailToWrite(m_request.Folder, errno);
    m_lock = CDescriptor(open(part.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!m_lock.IsOpen())
        FailToWrite(part, errno);
    if (flock(m_lock.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        throw std::runtime_error("another program is writing the plan " + m_request.Folder.string());
    m_part = part;
    for (const fs::directory_entry& left : fs::directory_iterator(part))
        fs::remove_all(left.path());
    fs::create_directory(part / "shards");
    fs::create_directory(part / "results");
}

CPlanCounts CPlanWriter::Write()
{
    for (const fs::path& folder : m_request.FilmFolders)
        if (!Walk(folder))
            return m_counts;
    Finish();
    return m_counts;
}

// False when the user does not want it any more.
bool CPlanWriter::Walk(const fs::path& folder)
{
    const auto onError = [this](const fs::path& path, const std::string& reason)
    {
        ++m_counts.Unreadable;
        SayFailure(path, reason);
    };
    CFolderWalk walk({folder}, onError);
    bool hasFilms = false;
    for (CFolderWalk::Film found; walk.GetNext(found); hasFilms = true)
    {
        if (CSignals::IsInterrupted())
            return false;
        See(found);
    }
    if (hasFilms)
        m_folders.push_back(folder);
    return !CSignals::IsInterrupted();
}

void CPlanWriter::See(const CFolderWalk::Film& found)
{
    const CTaskSet tasks = GetTasks(found);
    if (tasks.IsEmpty())
        ++m_counts.Unchanged;
    else
        Add({found.Path, found.Identity, tasks});
}

CTaskSet CPlanWriter::GetTasks(const CFolderWalk::Film& found) const
{
    const std::optional<CCatalogRow> row = m_request.Catalog == nullptr ? std::nullopt : m_request.Catalog->Find(found.Path);
    // One that is there again is in the plan for its row to be a film of lists again.
    if (!row || row->HasVanished)
        return m_request.Options.Tasks;
    return GetTasksFor(found, *row, m_request.Options);
}

void CPlanWriter::Add(const CPlannedFilm& film)
{
    const std::string line = MakeLine(film) + '\n';
    m_lines[static_cast<size_t>(m_counts.Films++ % m_request.Shards)] += line;
    m_waiting += line.size();
    if (m_waiting >= MaximumWaiting)
        Flush();
}

void CPlanWriter::Flush()
{
    for (size_t index = 0; index < m_lines.size(); ++index)
    {
        std::ofstream file(CPlan::GetShardFile(m_part, static_cast<int64_t>(index) + 1), std::ios::binary | std::ios::app);
        file << m_lines[index];
        file.close();
        if (!file)
            FailToWrite(m_request.Folder, errno);
        m_lines[index] = {};
    }
    m_waiting = 0;
}

void CPlanWriter::Finish()
{
    Flush();
    CWholeFile file(CPlan::GetFactsFile(m_part));
    file.Write(CPlan::MakeFacts({
        .ID = MakeUniqueName(),
        .Shards = m_request.Shards,
        .Films = m_counts.Films,
        .Created = time(nullptr),
        .Tasks = m_request.Options.Tasks,
        .Folders = m_folders,
    }));
    file.Finish();
    // Only an empty folder gives way.
    if (rename(m_part.c_str(), m_request.Folder.c_str()) != 0)
        FailToWrite(m_request.Folder, errno);
    m_part.clear();
}
