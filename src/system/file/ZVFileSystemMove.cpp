// Moving and copying files. What crosses devices goes through a command of the system, and stands under its new name only when it
// is whole.

#include "system/file/ZVFileError.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVShellWord.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/library/RunProgram.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
// A function that moves or copies, with the name under which it logs and the command that it runs.
struct Transfer
{
    ZVLogSource Source;
    const wchar_t* Program;
    const char* FailureFormat;
    bool KeepsSource;
};

constexpr Transfer Moving = {
    {ZVLogCategory::General, L"ZVFileSystem::MoveFile"},
    L"mv", "Error %d moving file: %s", false
};
constexpr Transfer Copying = {
    {ZVLogCategory::General, L"ZVFileSystem::CopyFile"},
    L"cp", "Error %d copying file: %s", true
};

bool Fail(const Transfer& transfer, int error, const ZVString& path)
{
    errno = error;
    ZVLogFileError(transfer.Source, transfer.FailureFormat, path);
    return false;
}

bool RunCommand(const Transfer& transfer, const ZVString& from, const ZVString& to)
{
    ZVStringArray parameters;
    parameters.Add(L"-f");
    parameters.Add(ZVShellWord(from));
    parameters.Add(ZVShellWord(to));
    int32_t exitCode = -1;
    if (RunProgram(transfer.Program, parameters, nullptr, ZVRunMode::Blocking, &exitCode) && exitCode == 0)
        return true;
    transfer.Source.Log("Command failed with %d: %s to %s", exitCode, from, to);
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

// The status of a path or, when there is nothing of that name yet, of the folder that it will be in.
ZVFileInfo GetTargetStatus(const ZVString& path)
{
    const ZVFileInfo status(path);
    if (status.IsFound())
        return status;
    const int32_t nameStart = path.ReverseFind(L'/') + 1;
    return ZVFileInfo(nameStart == 0 ? ZVString(L".") : path.Left(nameStart));
}

// A name beside a path that no other process and no other call uses, and no file has: an earlier process of the same id may have
// left one. It is short whatever the path's own name is.
ZVString GetNameBeside(const ZVString& path)
{
    static std::atomic<int32_t> s_counter {0};
    ZVString name;
    do
        name = ZVFormat(L"%s.zvtransfer-%d-%d.tmp", path.Left(path.ReverseFind(L'/') + 1), getpid(), ++s_counter);
    while (ZVFileInfo(name).IsFound());
    return name;
}

void LogLeftBehind(const Transfer& transfer, const ZVString& path)
{
    transfer.Source.Log("What was moved or copied is left as: %s", path);
}

// Lets the command bring the file to a name beside the new one, so that the command's failure, on a full disk above all, costs
// nothing.
bool TransferThrough(const Transfer& transfer, const ZVString& from, const ZVString& to)
{
    const ZVString beside = GetNameBeside(to);
    if (!RunCommand(transfer, from, beside))
    {
        // A folder is moved file by file, so that a part of it may be nowhere else by now.
        if (unlink(ZVNativePath(beside)) != 0 && errno != ENOENT)
            LogLeftBehind(transfer, beside);
        return false;
    }
    if (Rename(beside, to))
        return true;
    Fail(transfer, errno, to);
    if (transfer.KeepsSource)
        unlink(ZVNativePath(beside));
    else if (!RunCommand(transfer, beside, from))
        LogLeftBehind(transfer, beside);
    return false;
}

// Where a symbolic link leads to; any other path as it stands.
ZVString ResolveLink(const ZVString& path)
{
    char resolved[PATH_MAX];
    return realpath(ZVNativePath(path), resolved) == nullptr ? path : ZVNativePath::ToText(resolved);
}
}

bool ZVFileSystem::MoveFile(const ZVString& from, const ZVString& to)
{
    const ZVString source = WithoutClosingSlash(from);
    const ZVString target = WithoutClosingSlash(to);
    const ZVFileInfo sourceStatus(source);
    if (!sourceStatus.IsFound())
        return Fail(Moving, errno, from);
    const ZVFileInfo targetStatus = GetTargetStatus(target);
    if (!targetStatus.IsFound())
        return Fail(Moving, errno, to);
    if (targetStatus.IsDirectory() && !sourceStatus.IsDirectory() && IsDirectory(target))
        return Fail(Moving, EISDIR, to);
    if (sourceStatus.GetStatus().st_dev == targetStatus.GetStatus().st_dev)
    {
        if (Rename(source, target))
            return true;
        // One device that is mounted twice counts as two.
        if (errno != EXDEV)
            return Fail(Moving, errno, from);
    }
    return TransferThrough(Moving, source, target);
}

bool ZVFileSystem::CopyFile(const ZVString& from, const ZVString& to)
{
    const ZVFileInfo sourceStatus(from);
    if (!sourceStatus.IsFound() || sourceStatus.IsDirectory())
        return Fail(Copying, sourceStatus.IsFound() ? EISDIR : errno, from);
    const ZVString target = ResolveLink(WithoutClosingSlash(to));
    const ZVFileInfo targetStatus(target);
    if (targetStatus.IsDirectory())
        return Fail(Copying, EISDIR, to);
    // What is no file, as a device, is written to and not replaced.
    if (targetStatus.IsFound() && !S_ISREG(targetStatus.GetMode()))
        return RunCommand(Copying, from, target);
    return TransferThrough(Copying, from, target);
}
