#include "system/file/ZVWholeFile.h"

#include "system/file/ZVFile.h"
#include "system/file/ZVTransferPlace.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace
{
// A link in one of these stands for an open file, as /dev/stdout does. Its holder would never see a new file.
constexpr const wchar_t* OpenFileFolders[] = {L"/dev/", L"/proc/"};

// The names of attributes that begin so are set by the system for every file.
constexpr std::string_view SystemAttributeStart = "security.";

constexpr mode_t PermissionBits = 07777;
constexpr mode_t UnfinishedMode = 0600;

enum class Outcome
{
    Done,
    Failed,
    MustBeInPlace,
};

// What a path means to somebody who writes to it.
struct Target
{
    explicit Target(const ZVString& path);

    bool CanBeReplaced() const;

    ZVString Path;  // where a symbolic link leads to
    bool IsThere = false;
    bool IsReached = true;  // false if only the system can follow the path
    struct stat Status
    {
    };
};

Target::Target(const ZVString& path) : Path(path)
{
    ZVFilename::MakeFileSystemPath(Path);
    IsThere = lstat(ZVNativePath(Path), &Status) == 0;
    if (!IsThere)
    {
        IsReached = errno == ENOENT;
        return;
    }
    if (!S_ISLNK(Status.st_mode))
        return;
    char resolved[PATH_MAX];
    IsReached = realpath(ZVNativePath(Path), resolved) != nullptr && stat(resolved, &Status) == 0;
    for (const wchar_t* folder : OpenFileFolders)
        IsReached = IsReached && !Path.StartsWith(folder);
    if (IsReached)
        Path = ZVNativePath::ToText(resolved);
}

bool HasAttributesOfItsOwn(const char* path)
{
    const ssize_t size = llistxattr(path, nullptr, 0);
    std::vector<char> names(size > 0 ? static_cast<size_t>(size) : 0);
    if (names.empty())
        return false;
    const ssize_t used = llistxattr(path, names.data(), names.size());
    std::string_view rest(names.data(), used > 0 ? static_cast<size_t>(used) : 0);
    while (!rest.empty())
    {
        if (!rest.starts_with(SystemAttributeStart))
            return true;
        rest.remove_prefix(rest.find('\0') + 1);
    }
    return false;
}

bool Target::CanBeReplaced() const
{
    if (!IsReached)
        return false;
    if (!IsThere)
        return true;
    const ZVNativePath native(Path);
    return S_ISREG(Status.st_mode) && Status.st_nlink == 1 && euidaccess(native, W_OK) == 0 && !HasAttributesOfItsOwn(native);
}

// What a failed call means for the way in which the file has to be written. A file that is a mount point cannot be replaced
// either, and the path of a place beside it may be too long.
Outcome OutcomeOf(int error)
{
    const bool isImpossible = ZVTransferPlace::IsForbidden(error) || error == EBUSY || error == ENAMETOOLONG;
    return isImpossible ? Outcome::MustBeInPlace : Outcome::Failed;
}

// Makes an empty file with the owner and the mode of another.
bool MakeAlike(const ZVString& path, const struct stat& model)
{
    const ZVDescriptor file(open(ZVNativePath(path), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, UnfinishedMode));
    struct stat status;
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0)
        return false;
    const bool hasOwner = status.st_uid == model.st_uid && status.st_gid == model.st_gid;
    return (hasOwner || fchown(file.Get(), model.st_uid, model.st_gid) == 0) &&
           fchmod(file.Get(), model.st_mode & PermissionBits) == 0;
}

Outcome WriteBeside(const Target& target, const std::function<bool(const ZVString& path)>& write)
{
    const ZVTransferPlace place(ZVPathLayout::FolderOf(target.Path));
    if (!place.IsReady())
    {
        errno = place.GetError();
        return OutcomeOf(errno);
    }
    if (target.IsThere && !MakeAlike(place.GetPath(), target.Status))
        return OutcomeOf(errno);
    if (!write(place.GetPath()))
        return Outcome::Failed;
    return rename(ZVNativePath(place.GetPath()), ZVNativePath(target.Path)) == 0 ? Outcome::Done : OutcomeOf(errno);
}

// A file that was cut short must not pass for a result.
void RemoveShortFile(const ZVString& path)
{
    struct stat status;
    const ZVNativePath native(path);
    if (stat(native, &status) != 0 || !S_ISREG(status.st_mode) || truncate(native, 0) != 0)
        return;
    // A link that led to it, which may be one of the system's, stays.
    if (lstat(native, &status) == 0 && S_ISREG(status.st_mode))
        unlink(native);
}

bool WriteAll(const ZVString& path, const void* bytes, int64_t count)
{
    ZVFile file;
    if (!file.Open(ZVFilename::FromPath(path), ZVFileAccess::Write, ZVFileShare::Write, ZVFileCreation::CreateAndTruncate))
        return false;
    if (file.Write(bytes, count))
        return true;
    const int error = errno;
    file.Close();
    RemoveShortFile(path);
    errno = error;
    return false;
}
}

bool ZVWholeFile::Write(const ZVString& path, const std::function<bool(const ZVString& path)>& write)
{
    const Target target(path);
    const Outcome outcome = target.CanBeReplaced() ? WriteBeside(target, write) : Outcome::MustBeInPlace;
    return outcome == Outcome::MustBeInPlace ? write(target.Path) : outcome == Outcome::Done;
}

bool ZVWholeFile::WriteBytes(const ZVString& path, const void* bytes, int64_t count)
{
    return Write(path, [bytes, count](const ZVString& place) { return WriteAll(place, bytes, count); });
}
