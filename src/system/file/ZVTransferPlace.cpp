#include "system/file/ZVTransferPlace.h"

#include "system/file/ZVFolderLock.h"
#include "system/filename/ZVNativePath.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <ftw.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr mode_t FolderMode = 0700;
constexpr int MaximumOpenFolders = 16;

// How often the hidden folder may be removed by the last one in it while this one enters.
constexpr int MaximumTries = 1000;

ZVString GetRandomName()
{
    uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number)
        number = static_cast<uint64_t>(getpid());
    return ZVString::FromUInt(number, 16, 16);
}

int RemoveEntry(const char* path, const struct stat*, int, FTW*)
{
    return remove(path);
}

int RemoveEntryBelow(const char* path, const struct stat*, int, FTW* place)
{
    if (place->level > 0)
        remove(path);
    return 0;
}
}

ZVTransferPlace::ZVTransferPlace(const ZVString& folder)
    : m_folder(folder + ZVFormat(L"%s%d", FolderStart, geteuid())), m_error(Enter())
{
    m_path = m_folder + L"/" + GetRandomName();
}

ZVTransferPlace::~ZVTransferPlace()
{
    if (!IsReady())
        return;
    const int error = errno;
    Remove(m_path);
    // The attempt gives up the own lock, so of several that leave at the same time the last one gets this. On a file system
    // without locks nobody does: the folder stays, since another process may be about to make a file in it.
    if (ZVFolderLock::Try(m_lock, LOCK_EX))
        rmdir(ZVNativePath(m_folder));
    errno = error;
}

int ZVTransferPlace::Enter()
{
    for (int tries = 0; tries < MaximumTries; ++tries)
    {
        const ZVNativePath folder(m_folder);
        const bool isNew = mkdir(folder, FolderMode) == 0;
        if (!isNew && errno != EEXIST)
            return errno;
        m_lock = ZVDescriptor(open(folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!m_lock.IsOpen() && errno == ENOENT)
            continue;
        if (!isNew && IsForeign())
        {
            m_folder.AppendPieces(L"-", GetRandomName());
            continue;
        }
        if (!m_lock.IsOpen())
        {
            const int error = errno;
            rmdir(folder);
            return error;
        }
        // The last one out may have removed the folder that was opened here, and another made a new one that is in use: the lock on
        // the old one says nothing about that.
        if (!isNew && ZVFolderLock::Try(m_lock, LOCK_EX) && IsStillThere())
            nftw(folder, RemoveEntryBelow, MaximumOpenFolders, FTW_DEPTH | FTW_PHYS | FTW_MOUNT);
        ZVFolderLock::Wait(m_lock, LOCK_SH);
        if (IsStillThere())
            return 0;
    }
    return EBUSY;
}

// Whether the name was taken by somebody else, who could exchange what we put there.
bool ZVTransferPlace::IsForeign() const
{
    struct stat status;
    return !m_lock.IsOpen() || fstat(m_lock.Get(), &status) != 0 || status.st_uid != geteuid();
}

bool ZVTransferPlace::IsStillThere() const
{
    struct stat locked;
    struct stat named;
    return fstat(m_lock.Get(), &locked) == 0 && lstat(ZVNativePath(m_folder), &named) == 0 && locked.st_dev == named.st_dev &&
           locked.st_ino == named.st_ino;
}

bool ZVTransferPlace::IsForbidden(int error)
{
    return error == EACCES || error == EPERM || error == EROFS;
}

bool ZVTransferPlace::Remove(const ZVString& path)
{
    const ZVNativePath native(path);
    if (unlink(native) == 0 || errno == ENOENT)
        return true;
    return errno == EISDIR && nftw(native, RemoveEntry, MaximumOpenFolders, FTW_DEPTH | FTW_PHYS) == 0;
}
