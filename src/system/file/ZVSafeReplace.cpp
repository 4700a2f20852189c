#include "system/file/ZVSafeReplace.h"

#include "system/file/ZVFileError.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::SafeReplaceFile"};

// The 64-bit FNV-1a hash of the name's bytes.
uint64_t HashOf(const ZVString& name)
{
    uint64_t hash = 0xcbf29ce484222325;
    const ZVNativePath native(name);
    for (const char byte : native.GetBytes())
        hash = (hash ^ static_cast<uint8_t>(byte)) * 0x100000001b3;
    return hash;
}

ZVString FolderOf(const ZVString& path)
{
    const int32_t nameStart = path.ReverseFind(L'/') + 1;
    return nameStart == 0 ? ZVString(L"./") : path.Left(nameStart);
}

// The name that belongs to a path for one purpose. One that would be longer than the system takes is cut, and a hash of the whole
// name makes it the path's own again.
ZVString DeriveName(const ZVString& path, const wchar_t* end)
{
    const ZVString folder = path.Left(path.ReverseFind(L'/') + 1);
    const ZVString name = path.Mid(folder.GetLength());
    ZVString derived = name + end;
    const int32_t longest = std::min<int32_t>(name.GetLength(), NAME_MAX);
    for (int32_t kept = longest; kept > 0 && ZVNativePath(derived).GetBytes().size() > NAME_MAX; --kept)
        derived = ZVFormat(L"%s~%s%s", name.Left(kept), ZVString::FromUInt(HashOf(name), 16, 16), end);
    return folder + derived;
}

// Keeps other replacements out of a folder. Where the folder cannot be locked, or is locked for longer than any replacement
// takes, the work goes on without.
class FolderLock
{
public:
    explicit FolderLock(const ZVString& folder) : m_descriptor(open(ZVNativePath(folder), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        constexpr int32_t Attempts = 1000;
        constexpr useconds_t Pause = 10'000;
        for (int32_t attempt = 0; attempt < Attempts && m_descriptor != -1; ++attempt)
        {
            if (flock(m_descriptor, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR))
                return;
            usleep(Pause);
        }
        Source.Log("Going on without a lock on: %s", folder);
    }

    ~FolderLock()
    {
        if (m_descriptor != -1)
            close(m_descriptor);
    }

    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_descriptor;
};

// Has the file on the disk before what it replaces goes. False when the disk has not taken it; a file that cannot be opened, or a
// file system that cannot tell, does not keep it from being used.
bool WriteThrough(const ZVString& path)
{
    const int descriptor = open(ZVNativePath(path), O_RDONLY | O_CLOEXEC);
    if (descriptor == -1)
        return true;
    const bool isLost = fdatasync(descriptor) != 0 && (errno == EIO || errno == ENOSPC || errno == EDQUOT);
    if (isLost)
        ZVLogFileError(Source, "Error %d writing file to the disk: %s", path);
    close(descriptor);
    return !isLost;
}
}

ZVSafeReplace::ZVSafeReplace(const ZVString& path, const ZVString& newPath) : m_path(path), m_newPath(newPath)
{
    ZVFilename::MakeFileSystemPath(m_path);
    ZVFilename::MakeFileSystemPath(m_newPath);
    m_original = DeriveName(m_path, OriginalEnd);
    m_present = m_newPath;
}

bool ZVSafeReplace::Run(int64_t minimumSize, bool keepBackup)
{
    const FolderLock lock(FolderOf(m_path));
    if (IsOneFile())
    {
        Source.Log("A file cannot replace itself: %s", m_path);
        return false;
    }
    if (RestoreOriginal() && Replace(minimumSize, keepBackup))
        return true;
    Delete(m_present);
    return false;
}

bool ZVSafeReplace::IsOneFile() const
{
    return ZVFileInfo(m_path).IsSameFile(ZVFileInfo(m_newPath));
}

bool ZVSafeReplace::RestoreOriginal()
{
    if (ZVFileInfo(m_path).IsFound() || !ZVFileInfo(m_original).IsFound())
        return true;
    Source.Log("Putting back the original of: %s", m_path);
    return Move(m_original, m_path);
}

bool ZVSafeReplace::Replace(int64_t minimumSize, bool keepBackup)
{
    const int64_t size = ZVFileSystem::GetFileSize(m_newPath);
    if (size < 0 || size < minimumSize)
    {
        Source.Log("The new file has %d bytes and not %d: %s", size, minimumSize, m_newPath);
        return false;
    }
    if (ZVFileSystem::IsDirectory(m_path))
    {
        Source.Log("A folder cannot be replaced: %s", m_path);
        return false;
    }
    if (!BringBeside())
        return false;
    if (!ZVFileInfo(m_path).IsFound())
        return Move(m_present, m_path);
    if (keepBackup && !Copy(m_path, DeriveName(m_path, BackupEnd)))
    {
        Source.Log("Error making backup of original file: %s", m_path);
        return false;
    }
    return Exchange();
}

bool ZVSafeReplace::BringBeside()
{
    const ZVFileInfo folder(FolderOf(m_path));
    const ZVFileInfo newFile(m_newPath);
    if (!folder.IsFound() || folder.GetStatus().st_dev == newFile.GetStatus().st_dev)
        return true;
    const ZVString beside = DeriveName(m_path, NewEnd);
    if (!Move(m_newPath, beside))
        return false;
    m_present = beside;
    return true;
}

bool ZVSafeReplace::Exchange()
{
    if (!WriteThrough(m_present))
        return false;
    if (!Move(m_path, m_original))
    {
        Source.Log("Error renaming original file");
        return false;
    }
    if (Move(m_present, m_path))
    {
        Delete(m_original);
        return true;
    }
    Source.Log("Error moving new file into place of original name");
    if (!Move(m_original, m_path))
        Source.Log("The original file is left as: %s", m_original);
    return false;
}

bool ZVSafeReplace::Move(const ZVString& from, const ZVString& to)
{
    return ZVFileSystem::MoveFile(from, to);
}

bool ZVSafeReplace::Copy(const ZVString& from, const ZVString& to)
{
    return ZVFileSystem::CopyFile(from, to);
}

bool ZVSafeReplace::Delete(const ZVString& path)
{
    return ZVFileSystem::DeleteFile(path);
}

bool ZVFileSystem::SafeReplaceFile(const ZVString& path, const ZVString& newPath, int64_t minimumSize, bool keepBackup)
{
    return ZVSafeReplace(path, newPath).Run(minimumSize, keepBackup);
}
