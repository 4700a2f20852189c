#include "system/file/ZVLockedTemporaryFile.h"

#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVFolderLock.h"
#include "system/filename/ZVNativePath.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
constexpr mode_t PrivateMode = 0600;

// How often others may take the name that was free a moment ago.
constexpr int32_t MaximumTries = 1000;

// After that many bytes the disk begins to write them, so that it has little left to do in the end.
constexpr int64_t SendSize = int64_t {8} << 20;

bool IsSameFile(const struct stat& left, const struct stat& right)
{
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

// Whether a name is one that GetUniqueFilename gives.
bool IsOfKind(const ZVString& name, const ZVString& base, const ZVString& end)
{
    if (!name.StartsWith(base) || !name.EndsWith(end) || name.GetLength() < base.GetLength() + end.GetLength())
        return false;
    ZVString number = name.Mid(base.GetLength(), name.GetLength() - base.GetLength() - end.GetLength());
    if (number.IsEmpty())
        return true;
    constexpr wchar_t NumberStart[] = L" - ";
    const std::wstring_view digits = number.View().substr(std::min<size_t>(number.View().size(), 3));
    return number.StartsWith(NumberStart) && !digits.empty() &&
           std::ranges::all_of(digits, [](wchar_t digit) { return digit >= L'0' && digit <= L'9'; });
}

// The lock is kept until the name is gone, so a file that somebody has just made and not yet locked is found by that process to
// be another one's.
void DeleteUnlessLocked(const ZVString& path)
{
    const ZVNativePath native(path);
    const ZVDescriptor file(open(native, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat opened;
    struct stat named;
    if (file.IsOpen() && ZVFolderLock::Try(file, LOCK_EX) && fstat(file.Get(), &opened) == 0 && S_ISREG(opened.st_mode) &&
        lstat(native, &named) == 0 && IsSameFile(opened, named))
        ZVFileSystem::DeleteFile(path);
}
}

ZVLockedTemporaryFile::ZVLockedTemporaryFile(const ZVString& base, const ZVString& extension)
{
    ClearRemains(base, extension);
    m_error = EEXIST;
    for (int32_t tries = 0; tries < MaximumTries && m_error == EEXIST; ++tries)
        m_error = Make(base, extension);
}

ZVLockedTemporaryFile::~ZVLockedTemporaryFile()
{
    if (IsReady() && !m_isHandedOver)
        ZVFileSystem::DeleteFile(m_path);
}

void ZVLockedTemporaryFile::ClearRemains(const ZVString& base, const ZVString& extension) const
{
    ZVFileFinder finder;
    finder.Find(ZVFilename::FromPath(ZVFileSystem::GetDirectoryTemp()), ZVFind::FolderContent);
    for (ZVFileInfo info; finder.GetNext(info);)
        if (info.GetName().StartsWith(ZVFileSystem::WriteTestStart) || IsOfKind(info.GetName(), base, L"." + extension))
            DeleteUnlessLocked(info.GetPath());
}

// The system's reason why there is no file, EEXIST to try again.
int ZVLockedTemporaryFile::Make(const ZVString& base, const ZVString& extension)
{
    m_path = ZVFileSystem::GetUniqueFilename(ZVString(), base, extension);
    const ZVNativePath native(m_path);
    m_lock = ZVDescriptor(open(native, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, PrivateMode));
    if (!m_lock.IsOpen())
        return errno;
    // A descriptor of its own, since only closing it tells of some errors.
    m_file = ZVDescriptor(open(native, O_WRONLY | O_NOFOLLOW | O_CLOEXEC));
    const bool isTaken = !ZVFolderLock::Try(m_lock, LOCK_EX) && errno == EWOULDBLOCK;
    if (isTaken || !IsOwn())
        return EEXIST;
    if (m_file.IsOpen())
        return 0;
    const int error = errno;
    ZVFileSystem::DeleteFile(m_path);
    return error;
}

// Whether the name and both descriptors stand for the same file, which nobody has cleared away before it was locked.
bool ZVLockedTemporaryFile::IsOwn() const
{
    struct stat locked;
    struct stat opened;
    struct stat named;
    return fstat(m_lock.Get(), &locked) == 0 && lstat(ZVNativePath(m_path), &named) == 0 && IsSameFile(locked, named) &&
           (!m_file.IsOpen() || (fstat(m_file.Get(), &opened) == 0 && IsSameFile(locked, opened)));
}

bool ZVLockedTemporaryFile::Write(const void* bytes, int64_t count)
{
    const auto* next = static_cast<const char*>(bytes);
    for (int64_t rest = count; rest > 0;)
    {
        const ssize_t part = write(m_file.Get(), next, static_cast<size_t>(rest));
        if (part < 0 && errno != EINTR)
            return false;
        next += std::max<ssize_t>(part, 0);
        rest -= std::max<ssize_t>(part, 0);
    }
    m_written += count;
    if (m_written - m_sent >= SendSize)
    {
        sync_file_range(m_file.Get(), m_sent, m_written - m_sent, SYNC_FILE_RANGE_WRITE);
        m_sent = m_written;
    }
    return true;
}

bool ZVLockedTemporaryFile::Finish()
{
    const bool isOnDisk = fdatasync(m_file.Get()) == 0 || errno == EINVAL;
    const int error = errno;
    const bool isClosed = m_file.Close();
    errno = isOnDisk ? errno : error;
    return isOnDisk && isClosed;
}
