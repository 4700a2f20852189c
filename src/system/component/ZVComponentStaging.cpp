#include "system/component/ZVComponentStaging.h"

#include "system/log/ZVLog.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"ZVComponentStaging"};

constexpr mode_t FolderMode = 0777;
constexpr mode_t LockMode = 0600;

// A process has one or two at a time. More numbers are in use only if killed processes with the same id left folders.
constexpr int MaximumNumber = 100;

constexpr char Ending[] = ".part";
constexpr char LockName[] = "lock";
// The replaced component, on a file system that cannot exchange two folders in one step.
constexpr char OldName[] = "old";

ZVDescriptor OpenLock(const fs::path& folder)
{
    return ZVDescriptor(open((folder / LockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, LockMode));
}

// Locks a staging folder. False with EWOULDBLOCK when another process has it locked, or has just deleted it.
bool TakeLock(const ZVDescriptor& lock)
{
    struct stat status;
    if (flock(lock.Get(), LOCK_EX | LOCK_NB) != 0)
        return false;
    if (fstat(lock.Get(), &status) == 0 && status.st_nlink > 0)
        return true;
    errno = EWOULDBLOCK;
    return false;
}

bool Rename(const fs::path& from, const fs::path& to)
{
    return rename(from.c_str(), to.c_str()) == 0;
}

bool Exists(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// Deletes links and never follows them.
bool DeleteTree(const fs::path& path)
{
    std::error_code error;
    fs::remove_all(path, error);
    if (error)
        Source.Log("Error deleting %s: %s", path.c_str(), error.message().c_str());
    return !error;
}

// The staging folders of a package, of all its versions.
std::vector<fs::path> FindAll(const fs::path& components, const std::string& package)
{
    std::vector<fs::path> folders;
    std::error_code error;
    std::error_code ignored;
    for (fs::directory_iterator entry(components, error), end; !error && entry != end; entry.increment(error))
    {
        const fs::path& path = entry->path();
        if (path.filename().native().starts_with(package + "_v") && ZVComponentStaging::IsStaging(path) &&
            fs::is_directory(entry->symlink_status(ignored)))
            folders.push_back(path);
    }
    return folders;
}
}

ZVComponentStaging::ZVComponentStaging(const Path& components, const std::string& name)
{
    std::error_code ignored;
    fs::create_directories(components, ignored);
    const std::string stem = name + "." + std::to_string(getpid()) + "-";
    for (int number = 0; number < MaximumNumber && !m_lock.IsOpen(); ++number)
    {
        m_path = components / (stem + std::to_string(number) + Ending);
        if (mkdir(m_path.c_str(), FolderMode) != 0)
        {
            if (errno == EEXIST)
                continue;
            return;
        }
        m_lock = OpenLock(m_path);
        // On a file system without locks the folder is used without one.
        if (m_lock.IsOpen() && !TakeLock(m_lock) && errno == EWOULDBLOCK)
            m_lock.Close();
        // Either somebody who clears away remains is deleting the folder, or no file can be made in it.
        if (!m_lock.IsOpen())
            rmdir(m_path.c_str());
    }
    m_isThere = m_lock.IsOpen() && mkdir(GetNew().c_str(), FolderMode) == 0;
}

bool ZVComponentStaging::WriteThrough() const
{
    return syncfs(m_lock.Get()) == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}

bool ZVComponentStaging::PutInPlace(const Path& component)
{
    if (!Exists(component) && Rename(GetNew(), component))
        return true;
    if (std::error_code ignored; !fs::is_directory(component, ignored))
    {
        errno = ENOTDIR;
        return false;
    }
    if (renameat2(AT_FDCWD, GetNew().c_str(), AT_FDCWD, component.c_str(), RENAME_EXCHANGE) == 0)
        return true;
    const Path old = m_path / OldName;
    if (!Rename(component, old))
        return false;
    if (Rename(GetNew(), component))
        return true;
    Rename(old, component);
    return false;
}

bool ZVComponentStaging::TakeAway(const Path& folder)
{
    return Rename(folder, m_path / ("taken-" + std::to_string(m_takenCount++)));
}

bool ZVComponentStaging::Remove()
{
    return !m_lock.IsOpen() || (DeleteTree(m_path) && m_lock.Close());
}

bool ZVComponentStaging::IsStaging(const Path& path)
{
    return path.extension() == Ending;
}

bool ZVComponentStaging::HasAny(const Path& components, const std::string& package)
{
    return !FindAll(components, package).empty();
}

bool ZVComponentStaging::ClearRemains(const Path& components, const std::string& package)
{
    bool isAlone = true;
    for (const Path& folder : FindAll(components, package))
    {
        const ZVDescriptor lock = OpenLock(folder);
        if (!lock.IsOpen() || !TakeLock(lock))
        {
            isAlone = false;
            continue;
        }
        const Path old = folder / OldName;
        const Path component = components / folder.stem().stem();
        if (Exists(old) && !Exists(component) && !Rename(old, component))
            continue;
        DeleteTree(folder);
    }
    return isAlone;
}
