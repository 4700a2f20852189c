// What can be known about files without opening them.

#include "system/file/ZVFileError.h"
#include "system/file/ZVFileSearch.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace
{
constexpr ZVLogSource ZVStatFSSource {ZVLogCategory::General, L"ZVFileSystem::ZVStatFS"};
constexpr ZVLogSource SetFileAttributesSource {ZVLogCategory::General, L"ZVFileSystem::SetFileAttributes"};

constexpr mode_t NormalMode = 0644;
constexpr mode_t PermissionBits = 07777;

bool GetStatus(const ZVString& path, struct stat& status)
{
    return stat(ZVNativePath(path), &status) == 0;
}

void Give(int64_t* output, uint64_t blocks, uint64_t blockSize)
{
    if (output != nullptr)
        *output = static_cast<int64_t>(blocks * blockSize);
}
}

bool ZVFileSystem::ZVStatFS(const ZVString& path, int64_t* totalSize, int64_t* freeSize, int64_t* availableSize)
{
    const ZVLogScope scope(ZVStatFSSource, true);
    struct statvfs status
    {
    };
    const bool isKnown = statvfs(ZVNativePath(path), &status) == 0;
    if (!isKnown)
        ZVLogFileError(ZVStatFSSource, "Error %d asking for the space of: %s", path);
    Give(totalSize, status.f_blocks, status.f_frsize);
    Give(freeSize, status.f_bfree, status.f_frsize);
    Give(availableSize, status.f_bavail, status.f_frsize);
    return isKnown;
}

bool ZVFileSystem::Exists(const ZVString& path)
{
    struct stat status;
    return GetStatus(path, status);
}

bool ZVFileSystem::IsDirectory(const ZVString& path)
{
    struct stat status;
    return GetStatus(path, status) && S_ISDIR(status.st_mode);
}

int64_t ZVFileSystem::GetFileSize(const ZVString& path)
{
    struct stat status;
    return GetStatus(path, status) && !S_ISDIR(status.st_mode) ? status.st_size : -1;
}

uint32_t ZVFileSystem::GetFileAttributes(const ZVString& path)
{
    struct stat status;
    return GetStatus(path, status) ? status.st_mode : NoAttributes;
}

// A locked process may change the mode of a file that it can open, but not of every file that a path leads to.
bool ZVFileSystem::SetFileAttributes(const ZVString& path, uint32_t attributes)
{
    const mode_t mode = attributes == AttributesNormal ? NormalMode : attributes & PermissionBits;
    const ZVNativePath native(path);
    const ZVDescriptor file(open(native, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.IsOpen() ? fchmod(file.Get(), mode) == 0 : chmod(native, mode) == 0)
        return true;
    ZVLogFileError(SetFileAttributesSource, "Error %d setting attributes of: %s", path);
    return false;
}

int32_t ZVFileSystem::FindFiles(const ZVString& folder, ZVStringArray& out, bool recursive, const ZVStringArray& extensions)
{
    out.RemoveAll();
    ZVFileSearch search(folder, ZVString(), recursive);
    search.AddFilters(extensions);
    return search.GetResults(out);
}
