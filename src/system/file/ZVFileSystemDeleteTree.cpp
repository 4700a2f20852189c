// Deleting folders with what is in them.

#include "core/containers/ZVOwnedPtrArray.h"
#include "core/containers/ZVStringArray.h"
#include "system/file/ZVFileError.h"
#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVShellWord.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/library/RunProgram.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVFileSystem::DeleteDirectoryTree"};
constexpr char RefusalFile[] = "/var/tmp/lddebug";
constexpr mode_t RefusalFileMode = 0666;
constexpr wchar_t ParentStep[] = L"..";

// True for every way to write the root folder with slashes and "." steps.
bool NamesRoot(const ZVString& path)
{
    ZVString rest = path;
    rest.TrimRight(L"/.");
    return rest.IsEmpty() && !path.StartsWith(L'.');
}

bool IsRootFolder(const ZVString& path)
{
    struct stat root;
    struct stat folder;
    return stat("/", &root) == 0 && lstat(ZVNativePath(path), &folder) == 0 && root.st_dev == folder.st_dev &&
           root.st_ino == folder.st_ino;
}

// The guard of all deletions of folders. It must hold without the tools library too, where FindNoCase finds nothing.
bool IsRefused(const ZVString& path)
{
    return path.IsEqual(L"/", false) || path.FindNoCase(ParentStep) != -1 || path.Find(ParentStep) != -1 || NamesRoot(path) ||
           IsRootFolder(path);
}

// Opens the file for appending, and makes it, open to every user, if it does not exist. An existing one is opened first, since
// some systems refuse to "create" the existing file of another user in a folder that all can write to. A pipe of that name, which
// anyone can make there, is not waited for.
ZVDescriptor OpenRefusalFile()
{
    constexpr int Flags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    ZVDescriptor file(open(RefusalFile, Flags));
    if (!file.IsOpen() && errno == ENOENT)
    {
        file = ZVDescriptor(open(RefusalFile, Flags | O_CREAT, RefusalFileMode));
        if (file.IsOpen())
            fchmod(file.Get(), RefusalFileMode);
    }
    return file;
}

// Notes a refusal where the developers look for it. One write keeps the lines of several processes apart.
void NoteRefusal(const ZVString& path)
{
    Source.Log("REJECTING DELETE BECAUSE PATH=%s", path);
    ZVString line = L"REJECTING DELETE BECAUSE PATH=" + path;
    ZVFileSystem::ReplaceForbiddenCharacters(line);
    line.AppendCharacter(L'\n');
    const ZVDescriptor file = OpenRefusalFile();
    const std::unique_ptr<char[]> bytes(line.GetUTF8());
    const size_t size = std::char_traits<char>::length(bytes.get());
    if (!file.IsOpen() || write(file.Get(), bytes.get(), size) != static_cast<ssize_t>(size))
        ZVLogFileError(Source, "Error %d writing file: %s", ZVString::FromUTF8(RefusalFile));
}

bool IsThere(const ZVString& path)
{
    struct stat status;
    return lstat(ZVNativePath(path), &status) == 0;
}

bool IsLink(const ZVString& path)
{
    struct stat status;
    return lstat(ZVNativePath(path), &status) == 0 && S_ISLNK(status.st_mode);
}

ZVString WithoutClosingSlash(ZVString path)
{
    path.TrimRight(L'/');
    return path;
}

// The path without any "." steps at its end: after one, a symbolic link would look like the folder that it leads to.
ZVString WithoutIdleSteps(ZVString path)
{
    path = WithoutClosingSlash(path);
    while (path.EndsWith(L"/."))
        path = WithoutClosingSlash(path.Left(path.GetLength() - 1));
    return path;
}

// Removes a folder with everything in it.
bool RemoveByCommand(const ZVString& folder)
{
    ZVStringArray parameters;
    parameters.Add(L"-rf");
    parameters.Add(ZVShellWord(folder));
    int32_t exitCode = -1;
    RunProgram(L"rm", parameters, nullptr, ZVRunMode::Blocking, &exitCode);
    if (!IsThere(folder))
        return true;
    Source.Log("Command failed with %d: %s", exitCode, folder);
    return false;
}

// One deletion, with the listings of the folders that it is in: from the outermost to the one whose content it deletes.
class TreeDeletion
{
public:
    TreeDeletion(const ZVString& filter, bool keepRoot) : m_filter(filter), m_keepsRoot(keepRoot) {}

    bool Run(const ZVString& root)
    {
        Enter(root);
        ZVFileInfo entry;
        while (m_folders.GetCount() > 0)
        {
            if (m_folders[m_folders.GetCount() - 1]->Listing.GetNext(entry))
                Take(entry);
            else
                Leave();
        }
        // The folders around a refused one stay.
        if (m_keepsRoot || m_isRefused)
            return !m_isRefused && !m_hasFailed;
        return RemoveByCommand(WithoutClosingSlash(root));
    }

private:
    struct Folder
    {
        ZVString Path;
        ZVFileFinder Listing;
    };

    void Enter(const ZVString& path)
    {
        if (IsRefused(path))
        {
            NoteRefusal(path);
            m_isRefused = true;
            return;
        }
        auto folder = std::make_unique<Folder>();
        folder->Path = path;
        folder->Listing.Find(ZVFilename::FromPath(path), ZVFind::FolderContent);
        m_folders.Add(folder.get());
        folder.release();
    }

    void Take(const ZVFileInfo& entry)
    {
        const ZVString path = WithoutClosingSlash(entry.GetPath());
        if (entry.IsDirectory() && !IsLink(path))
            Enter(entry.GetPath());
        else if (Passes(path) && !ZVFileSystem::DeleteFile(path) && IsThere(path))
            m_hasFailed = true;
    }

    void Leave()
    {
        const int32_t last = m_folders.GetCount() - 1;
        const ZVString path = WithoutClosingSlash(m_folders[last]->Path);
        m_folders.RemoveAt(last);
        if (last == 0 || !m_filter.IsEmpty() || rmdir(ZVNativePath(path)) == 0)
            return;
        // Names that the listing leaves out are still there. If the root goes they go with it, and a refused folder keeps the
        // folders around it.
        if (m_keepsRoot && !m_isRefused && !RemoveByCommand(path))
            m_hasFailed = true;
    }

    bool Passes(const ZVString& path) const
    {
        return m_filter.IsEmpty() || m_filter.IsEqual(path.GetText() + ZVPathLayout::Of(path).ExtensionStart, false);
    }

    const ZVString& m_filter;
    bool m_keepsRoot;
    bool m_isRefused = false;
    bool m_hasFailed = false;
    ZVOwnedPtrArray<Folder> m_folders;
};
}

bool ZVFileSystem::DeleteDirectoryTree(const ZVString& path, bool keepRoot, const ZVString& filter)
{
    ZVString folder = path;
    ZVFilename::MakeFileSystemPath(folder);
    if (IsRefused(folder))
    {
        NoteRefusal(path);
        return false;
    }
    const ZVString plain = WithoutIdleSteps(folder);
    if (IsLink(plain))
    {
        if (!keepRoot)
            return DeleteFile(plain);
        Source.Log("A symbolic link is not entered: %s", path);
        return false;
    }
    if (!IsDirectory(plain))
    {
        errno = IsThere(plain) ? ENOTDIR : ENOENT;
        ZVLogFileError(Source, "Error %d deleting folder: %s", path);
        return false;
    }
    return TreeDeletion(filter, keepRoot).Run(plain + L"/");
}
