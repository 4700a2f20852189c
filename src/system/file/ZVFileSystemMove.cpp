// Moving and copying files. What is brought from another device stands under its new name only when it is whole.

#include "system/file/ZVBringAcross.h"
#include "system/file/ZVFileCommand.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVTransferPlace.h"
#include "system/file/ZVWholeFile.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>
#include <cstdio>

namespace
{
constexpr ZVLogSource MoveSource {ZVLogCategory::General, L"ZVFileSystem::MoveFile"};
constexpr ZVLogSource CopySource {ZVLogCategory::General, L"ZVFileSystem::CopyFile"};
constexpr ZVFileCommand Copying {CopySource, L"cp", L"-f"};

bool FailToMove(int error, const ZVString& path)
{
    errno = error;
    ZVLogFileError(MoveSource, "Error %d moving file: %s", path);
    return false;
}

bool FailToCopy(int error, const ZVString& path)
{
    errno = error;
    ZVLogFileError(CopySource, "Error %d copying file: %s", path);
    return false;
}

bool Rename(const ZVString& from, const ZVString& to)
{
    return rename(ZVNativePath(from), ZVNativePath(to)) == 0;
}

ZVString WithoutClosingSlash(const ZVString& path)
{
    ZVString text = path;
    ZVFilename::MakeFileSystemPath(text);
    while (text.GetLength() > 1 && text.EndsWith(L'/'))
        text.Trim(0, 1);
    return text;
}

// The status of a path or, if nothing has that name yet, of the folder that it will be in.
ZVFileInfo GetTargetStatus(const ZVString& path)
{
    const ZVFileInfo status(path);
    return status.IsFound() ? status : ZVFileInfo(ZVPathLayout::FolderOf(path));
}

// The copy gets its name before the source loses its own.
bool MoveAcross(const ZVString& from, const ZVString& to)
{
    const ZVTransferPlace place(ZVPathLayout::FolderOf(to));
    if (!place.IsReady())
        return FailToMove(place.GetError(), to);
    if (!ZVBringAcross(from, place))
        return false;
    if (!Rename(place.GetPath(), to))
        return FailToMove(errno, to);
    return ZVTransferPlace::Remove(from) || FailToMove(errno, from);
}
}

bool ZVFileSystem::MoveFile(const ZVString& from, const ZVString& to)
{
    const ZVString source = WithoutClosingSlash(from);
    const ZVString target = WithoutClosingSlash(to);
    const ZVFileInfo sourceStatus(source);
    if (!sourceStatus.IsFound())
        return FailToMove(errno, from);
    const ZVFileInfo targetStatus = GetTargetStatus(target);
    if (!targetStatus.IsFound())
        return FailToMove(errno, to);
    if (!sourceStatus.IsDirectory() && IsDirectory(target))
        return FailToMove(EISDIR, to);
    if (sourceStatus.GetStatus().st_dev == targetStatus.GetStatus().st_dev)
    {
        if (Rename(source, target))
            return true;
        // One device that is mounted twice counts as two.
        if (errno != EXDEV)
            return FailToMove(errno, from);
    }
    return MoveAcross(source, target);
}

bool ZVFileSystem::CopyFile(const ZVString& from, const ZVString& to)
{
    const ZVFileInfo sourceStatus(from);
    if (!sourceStatus.IsFound() || sourceStatus.IsDirectory())
        return FailToCopy(sourceStatus.IsFound() ? EISDIR : errno, from);
    const ZVString target = WithoutClosingSlash(to);
    if (IsDirectory(target))
        return FailToCopy(EISDIR, to);
    bool hasCommandFailed = false;
    const auto copy = [&](const ZVString& path)
    {
        hasCommandFailed = !Copying.Run(from, path);
        return !hasCommandFailed;
    };
    return ZVWholeFile::Write(target, copy) || (!hasCommandFailed && FailToCopy(errno, to));
}
