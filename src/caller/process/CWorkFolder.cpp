#include "caller/process/CWorkFolder.h"

#include "caller/process/CPlainName.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

constexpr char Start[] = "zivora-";

// A folder that is younger may not be locked yet by the one who makes it.
constexpr time_t MinimumAge = 60;

// The workers get names in this folder as they stand.
fs::path GetTemporaryFolder()
{
    fs::path folder = fs::temp_directory_path();
    return IsPlainName(folder / "name") ? folder : fs::path("/tmp");
}

CDescriptor Open(const fs::path& folder)
{
    return CDescriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

// Who works with a folder has it locked.
void RemoveAbandoned(const fs::path& place)
{
    std::error_code error;
    for (fs::directory_iterator entry(place, error), end; !error && entry != end; entry.increment(error))
    {
        if (!entry->path().filename().native().starts_with(Start))
            continue;
        const CDescriptor folder = Open(entry->path());
        struct stat status;
        if (!folder.IsOpen() || fstat(folder.Get(), &status) != 0 || status.st_uid != geteuid() ||
            time(nullptr) - status.st_mtime < MinimumAge || flock(folder.Get(), LOCK_EX | LOCK_NB) != 0)
            continue;
        std::error_code ignored;
        fs::remove_all(entry->path(), ignored);
    }
}
}

CWorkFolder::CWorkFolder()
{
    const fs::path place = GetTemporaryFolder();
    RemoveAbandoned(place);
    std::string name = place / (std::string(Start) + "XXXXXX");
    if (mkdtemp(name.data()) == nullptr)
        throw fs::filesystem_error("no folder for temporary files can be made", name,
                                   std::error_code(errno, std::generic_category()));
    m_path = name;
    m_lock = Open(m_path);
    flock(m_lock.Get(), LOCK_EX | LOCK_NB);
}

CWorkFolder::~CWorkFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

fs::path CWorkFolder::MakeTaskFolder() const
{
    const fs::path folder = m_path / ("task" + std::to_string(++m_count));
    mkdir(folder.c_str(), S_IRWXU);
    return folder;
}
