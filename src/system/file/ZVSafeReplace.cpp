#include "system/file/ZVSafeReplace.h"

#include "system/file/ZVBringAcross.h"
#include "system/file/ZVCopyAttributes.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVFolderLock.h"
#include "system/file/ZVTransferPlace.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::SafeReplaceFile"};

// How often other processes may replace the file while this one makes its backup.
constexpr int32_t MaximumTries = 100;

// The 64-bit FNV-1a hash of the name's bytes.
uint64_t HashOf(const ZVString& name)
{
    uint64_t hash = 0xcbf29ce484222325;
    const ZVNativePath native(name);
    for (const char byte : native.GetBytes())
        hash = (hash ^ static_cast<uint8_t>(byte)) * 0x100000001b3;
    return hash;
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

// Keeps the renames of other replacements out of a folder. If the folder cannot be locked, or somebody keeps it locked for much
// longer than renames take, the work goes on without a lock.
class RenameLock
{
public:
    explicit RenameLock(const ZVString& folder) : m_folder(open(ZVNativePath(folder), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        if (m_folder.IsOpen() && !ZVFolderLock::Wait(m_folder, LOCK_EX))
            ZVLogFileError(Source, "Error %d, going on without a lock on: %s", folder);
    }

private:
    ZVDescriptor m_folder;
};

ZVFileVersion VersionOf(const ZVFileInfo& file)
{
    return ZVFileVersion(file.GetStatus());
}

// Whether a file system, or this user on it, has no second names for the file.
bool HasNoLinks(int error)
{
    constexpr int Errors[] = {EPERM, ENOTSUP, ENOSYS, EMLINK, EXDEV};
    return std::ranges::find(Errors, error) != std::end(Errors);
}

// Whether a folder lets this user neither delete nor rename the file.
bool IsKeptByFolder(const ZVFileInfo& folder, const ZVFileInfo& file)
{
    const uid_t user = geteuid();
    return (folder.GetMode() & S_ISVTX) != 0 && user != 0 && user != file.GetStatus().st_uid && user != folder.GetStatus().st_uid;
}

// Has the new file on the disk before the old one goes. False if the disk has not taken it. A file that cannot be opened, or a
// file system that cannot tell, is no reason to stop.
bool WriteThrough(const ZVString& path)
{
    const ZVDescriptor file(open(ZVNativePath(path), O_RDONLY | O_CLOEXEC));
    if (!file.IsOpen() || fdatasync(file.Get()) == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT))
        return true;
    ZVLogFileError(Source, "Error %d writing file to the disk: %s", path);
    return false;
}
}

ZVSafeReplace::ZVSafeReplace(const ZVString& path, const ZVString& newPath, const ZVReplaceOptions& options)
    : m_path(path), m_newPath(newPath), m_options(options)
{
    ZVFilename::MakeFileSystemPath(m_path);
    ZVFilename::MakeFileSystemPath(m_newPath);
    m_folder = ZVPathLayout::FolderOf(m_path);
    m_original = DeriveName(m_path, OriginalEnd);
    m_present = m_newPath;
}

ZVSafeReplace::~ZVSafeReplace() = default;

bool ZVSafeReplace::Run()
{
    if (ZVFileInfo(m_path).IsSameFile(ZVFileInfo(m_newPath)))
    {
        Source.Log("A file cannot replace itself: %s", m_path);
        return false;
    }
    const bool isReplaced = SettleOriginal() && CanReplace() && BringBeside() && Replace();
    if (!isReplaced || m_present != m_newPath)
        Delete(m_newPath);
    return isReplaced;
}

// Ends what a replacement that was killed has begun.
bool ZVSafeReplace::SettleOriginal()
{
    if (!ZVFileInfo(m_original).IsFound())
        return true;
    const RenameLock lock(m_folder);
    // It may just have been another process in the middle of its work.
    if (!ZVFileInfo(m_original).IsFound())
        return true;
    if (!ZVFileInfo(m_path).IsFound())
        return PutBackOriginal();
    ClearOriginal();
    return true;
}

bool ZVSafeReplace::PutBack(const ZVString& path)
{
    // Of a link that leads nowhere this is where it leads to.
    char missing[PATH_MAX];
    if (realpath(ZVNativePath(path), missing) != nullptr || errno != ENOENT)
        return false;
    ZVSafeReplace replace(ZVNativePath::ToText(missing), ZVString(), {});
    return ZVFileInfo(replace.m_original).IsFound() && replace.SettleOriginal();
}

bool ZVSafeReplace::PutBackOriginal()
{
    Source.Log("Putting back the original of: %s", m_path);
    return Move(m_original, m_path);
}

// The file is there, so this is not the only copy of anything.
void ZVSafeReplace::ClearOriginal()
{
    const bool isExpected = m_options.Expected && *m_options.Expected == VersionOf(ZVFileInfo(m_path));
    Delete(m_original);
    // If it was a second name of the file, its going is a change of the file's status.
    if (isExpected)
        m_options.Expected = VersionOf(ZVFileInfo(m_path));
}

bool ZVSafeReplace::CanReplace() const
{
    const int64_t size = ZVFileSystem::GetFileSize(m_newPath);
    if (size < 0 || size < m_options.MinimumSize)
    {
        Source.Log("The new file has %d bytes and not %d: %s", size, m_options.MinimumSize, m_newPath);
        return false;
    }
    if (!ZVFileSystem::IsDirectory(m_path))
        return true;
    Source.Log("A folder cannot be replaced: %s", m_path);
    return false;
}

bool ZVSafeReplace::BringBeside()
{
    const ZVFileInfo folder(m_folder);
    const ZVFileInfo newFile(m_newPath);
    if (!folder.IsFound() || folder.GetStatus().st_dev == newFile.GetStatus().st_dev)
        return true;
    m_place = std::make_unique<ZVTransferPlace>(m_folder);
    if (!m_place->IsReady())
    {
        errno = m_place->GetError();
        ZVLogFileError(Source, "Error %d making a file beside: %s", m_path);
        return false;
    }
    m_present = m_place->GetPath();
    return Bring(m_newPath, *m_place);
}

bool ZVSafeReplace::Replace()
{
    for (int32_t tries = 0; tries < MaximumTries; ++tries)
    {
        const ZVFileInfo original(m_path);
        if (m_options.Expected && *m_options.Expected != VersionOf(original))
        {
            Source.Log("The file is not the one any more that was to be replaced: %s", m_path);
            return false;
        }
        const bool isPrepared = !original.IsFound() || PrepareNewFile();
        const RenameLock lock(m_folder);
        const ZVFileInfo now(m_path);
        if (MayHaveChanged(original, now))
            continue;
        if (!isPrepared)
            return false;
        if (now.GetStatus().st_nlink > 1)
            Source.Log("The other names of the file keep the old content: %s", m_path);
        return now.IsFound() ? Exchange() : Move(m_present, m_path);
    }
    Source.Log("Other processes replace the file all the time: %s", m_path);
    return false;
}

bool ZVSafeReplace::PrepareNewFile()
{
    if (m_options.From == ZVReplaceOptions::Attributes::OfOldFile && !CopyAttributes(m_path, m_present))
        return false;
    if (!WriteThrough(m_present))
        return false;
    if (m_options.Backup == ZVReplaceOptions::OldFile::Goes || Copy(m_path, DeriveName(m_path, BackupEnd)))
        return true;
    Source.Log("Error making backup of original file: %s", m_path);
    return false;
}

// Another process may have replaced the file since it was looked at, or just been about to. What goes must be what was copied.
bool ZVSafeReplace::MayHaveChanged(const ZVFileInfo& before, const ZVFileInfo& now) const
{
    const bool mustBeSame = m_options.Backup == ZVReplaceOptions::OldFile::StaysAsBackup ||
                            m_options.From == ZVReplaceOptions::Attributes::OfOldFile || m_options.Expected;
    return now.IsFound() != before.IsFound() || (mustBeSame && VersionOf(now) != VersionOf(before));
}

bool ZVSafeReplace::Exchange()
{
    bool hasTwoNames = false;
    if (!SetAside(hasTwoNames))
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
    if (hasTwoNames)
        Delete(m_original);
    else if (!Move(m_original, m_path))
        Source.Log("The original file is left as: %s", m_original);
    return false;
}

// Gives the original its second name, which is its only one where it can have no two. In a folder that keeps the files of others
// the second name could not be deleted again.
bool ZVSafeReplace::SetAside(bool& hasTwoNames)
{
    if (IsKeptByFolder(ZVFileInfo(m_folder), ZVFileInfo(m_path)))
        return false;
    hasTwoNames = Link(m_path, m_original);
    return hasTwoNames || (HasNoLinks(errno) && Move(m_path, m_original));
}

bool ZVSafeReplace::Bring(const ZVString& from, const ZVTransferPlace& place)
{
    return ZVBringAcross(from, place);
}

bool ZVSafeReplace::CopyAttributes(const ZVString& from, const ZVString& to)
{
    return ZVCopyAttributes(from, to);
}

bool ZVSafeReplace::Link(const ZVString& from, const ZVString& to)
{
    return link(ZVNativePath(from), ZVNativePath(to)) == 0;
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
    using OldFile = ZVReplaceOptions::OldFile;
    const ZVReplaceOptions options {.MinimumSize = minimumSize, .Backup = keepBackup ? OldFile::StaysAsBackup : OldFile::Goes};
    return ZVSafeReplace(path, newPath, options).Run();
}
