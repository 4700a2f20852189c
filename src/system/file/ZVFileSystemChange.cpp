// Making and deleting single files and folders.

#include "system/file/ZVFileError.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource DeleteFileSource {ZVLogCategory::General, L"ZVFileSystem::DeleteFile"};
constexpr ZVLogSource MakeDirectoryTreeSource {ZVLogCategory::General, L"ZVFileSystem::MakeDirectoryTree"};

constexpr mode_t NewFolderMode = 0777;
constexpr mode_t NewFileMode = 0644;

// A number that no other process gives its test file at the same time: nanoseconds within a hundred seconds, followed by the
// process id.
int64_t GetWriteTestNumber()
{
    constexpr int64_t NanosecondsPerSecond = 1'000'000'000;
    constexpr int64_t Seconds = 100;
    constexpr int64_t ProcessIdRange = 10'000'000;  // above the largest id that Linux gives, 4194304
    timespec now {};
    clock_gettime(CLOCK_REALTIME, &now);
    return (now.tv_sec % Seconds * NanosecondsPerSecond + now.tv_nsec) * ProcessIdRange + getpid();
}

// Where the first folder of a path can end: what is before it is not made. To this system a network name is an ordinary folder
// after two slashes.
int32_t GetFirstFolderStart(const ZVString& path)
{
    return path.StartsWith(L"//") ? 2 : ZVPathLayout::Of(path).DriveEnd + 1;
}

// Makes each missing folder of a path that ends in "/", and stops at the first that cannot be made.
void MakeFolders(const ZVString& path, bool silent)
{
    for (int32_t end = path.Find(L'/', GetFirstFolderStart(path)); end != -1; end = path.Find(L'/', end + 1))
    {
        const ZVString folder = path.Left(end);
        if (ZVFileSystem::Exists(folder) || mkdir(ZVNativePath(folder), NewFolderMode) == 0 || errno == EEXIST)
            continue;
        if (!silent)
            ZVLogFileError(MakeDirectoryTreeSource, "Error %d making folder: %s", folder);
        return;
    }
}
}

bool ZVFileSystem::MakeDirectoryTree(const ZVString& path, bool silent)
{
    ZVString folder = path;
    ZVFilename::MakeFileSystemPath(folder);
    if (!folder.IsEmpty())
    {
        folder = ZVPathLayout::WithClosingSlash(folder);
        if (IsDirectoryWritable(folder))
            return true;
        MakeFolders(folder, silent);
        if (IsDirectoryWritable(folder))
            return true;
    }
    if (!silent)
        MakeDirectoryTreeSource.Log("Failed! Path=%s", path);
    return false;
}

bool ZVFileSystem::IsDirectoryWritable(const ZVString& path)
{
    if (path.IsEmpty())
        return false;
    const ZVNativePath file(ZVFormat(L"%s%s%d).tmp", ZVPathLayout::WithClosingSlash(path), WriteTestStart, GetWriteTestNumber()));
    // Without a lock, so that two processes that come to the same number do not fail on each other.
    const ZVDescriptor descriptor(open(file, O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, NewFileMode));
    if (descriptor.IsOpen())
        unlink(file);
    return descriptor.IsOpen();
}

bool ZVFileSystem::DeleteFile(const ZVString& path)
{
    if (unlink(ZVNativePath(path)) == 0)
        return true;
    if (errno != ENOENT)
        ZVLogFileError(DeleteFileSource, "Error %d deleting existing file: %s", path);
    return false;
}
