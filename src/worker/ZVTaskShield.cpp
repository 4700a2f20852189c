#include "worker/ZVTaskShield.h"

#include "contracts/ILogManager.h"
#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "disc/dvd/CDvdTitle.h"
#include "system/component/DependencyInstaller.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"
#include "system/library/CProcessBlock.h"
#include "system/library/CProcessInfo.h"
#include "system/library/ZVDllString.h"
#include "system/library/ZVFileTypes.h"
#include "system/library/ZVSiblingTable.h"
#include "system/log/ZVLog.h"
#include "system/shield/ZVMemoryLimit.h"
#include "system/shield/ZVSystemFolders.h"
#include "worker/ZVProgramFiles.h"
#include "worker/ZVWorkerApp.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVTaskShield"};

using enum ZVShieldAccess;

constexpr int32_t InputParameter = 0;
constexpr int32_t ResultParameter = 1;
constexpr int32_t MetadataParameter = 2;
// The task of the display counts from the start of the command line.
constexpr int32_t DisplayResultArgument = 2;

constexpr mode_t NewFolderMode = 0777;

constexpr wchar_t OwnProcessFolder[] = L"/proc/self";
constexpr wchar_t LabelFolder[] = L"/dev/disk";
constexpr wchar_t SharedMemoryFolder[] = L"/dev/shm/";
constexpr const wchar_t* SettingsFiles[] = {L"Settings.db", L"Settings.db-wal", L"Settings.db-shm"};

constexpr wchar_t MemoryVariable[] = L"ZV_MEMORY_LIMIT";
constexpr wchar_t MemorySection[] = L"Shield";
constexpr wchar_t MemorySetting[] = L"Memory Limit";

// What files between devices are brought with.
constexpr const char* TransferPrograms[] = {"mv", "cp"};

// How names of hosts become addresses, and whom the system trusts.
constexpr const wchar_t* InternetFiles[] = {
    L"/etc/resolv.conf", L"/etc/hosts", L"/etc/nsswitch.conf", L"/etc/host.conf",       L"/etc/gai.conf", L"/etc/services",
    L"/etc/protocols",   L"/etc/ssl",   L"/etc/pki",           L"/etc/ca-certificates", L"/etc/gnutls",   L"/etc/crypto-policies",
};

// Files of the kernel: what is written there goes to an open file or a device, and never beside it. The folder of the shared memory
// is one like any other.
constexpr const wchar_t* KernelFolders[] = {L"/dev/", L"/proc/"};

// The folders in which a disc has its files, and a file beside them that is read.
constexpr const wchar_t* DiscMarkers[] = {L"/BDMV/", L"/VIDEO_TS/"};
constexpr wchar_t DiscInformation[] = L"disc.inf";
constexpr wchar_t DvdExtension[] = L"ifo";
// A playlist is in a folder of its own within the first of them.
constexpr wchar_t PlaylistExtension[] = L"mpls";
constexpr const wchar_t* BlurayExtensions[] = {L"bdmv", L"bdmv3d", L"bluray", L"bluray3d", PlaylistExtension};

#if defined(__SANITIZE_ADDRESS__)
// The search for leaks looks through the memory of the process.
constexpr bool IsSanitized = true;
#else
constexpr bool IsSanitized = false;
#endif

ZVString GetEnvironment(const char* name)
{
    return ZVNativePath::ToText(getenv(name));
}

// The path without links, a folder with a "/" at its end; empty if nothing is there.
ZVString Resolve(const ZVString& path)
{
    char resolved[PATH_MAX];
    if (realpath(ZVNativePath(path), resolved) == nullptr)
        return {};
    const ZVString text = ZVNativePath::ToText(resolved);
    return ZVFileSystem::IsDirectory(text) ? ZVPathLayout::WithClosingSlash(text) : text;
}

// Where a link leads to, if nothing is there yet; empty for everything else.
ZVString ReadBrokenLink(const ZVString& path)
{
    char target[PATH_MAX];
    const ssize_t length = readlink(ZVNativePath(path), target, sizeof target - 1);
    if (length < 1 || ZVFileSystem::Exists(path))
        return {};
    target[length] = '\0';
    const ZVString text = ZVNativePath::ToText(target);
    return text.StartsWith(L'/') ? text : ZVPathLayout::FolderOf(path) + text;
}

// The folder of an existing file, or the existing folder itself, without links.
ZVString ResolveFolder(const ZVString& path)
{
    const ZVString resolved = Resolve(path);
    return resolved.IsEmpty() || resolved.EndsWith(L'/') ? resolved : ZVPathLayout::FolderOf(resolved);
}

bool IsInKernel(const ZVString& path)
{
    const auto isBelow = [&path](const wchar_t* folder) { return path.StartsWith(folder); };
    return std::ranges::any_of(KernelFolders, isBelow) && !isBelow(SharedMemoryFolder);
}

// A server of this machine is named by a colon, or by the path of its socket.
bool IsDisplayRemote()
{
    const ZVString display = GetEnvironment("DISPLAY");
    return !display.IsEmpty() && !display.StartsWith(L':') && !display.StartsWith(L'/') && !display.StartsWith(L"unix");
}

ZVString ReadMemorySetting()
{
    IZVSettings* const settings = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetSettings(true);
    ZVString text;
    ZVDllString value(text);
    if (settings != nullptr)
        settings->GetSetting(MemorySection, MemorySetting, value);
    return text;
}

// The variable wins. The setting is for tasks that decode: reading one takes longer than all that the others do.
int64_t ReadMemoryLimit(ZVTaskNeeds needs)
{
    const ZVString fromEnvironment = GetEnvironment("ZV_MEMORY_LIMIT");
    const bool asksSetting = fromEnvironment.IsEmpty() && Needs(needs, ZVTaskNeeds::ReadsFilm);
    const ZVString text = asksSetting ? ReadMemorySetting() : fromEnvironment;
    if (text.IsEmpty())
        return ZVMemoryLimit::Default;
    const int64_t limit = ZVMemoryLimit::Parse(text);
    if (limit > 0)
        return limit;
    Source.Log("%s is no number of bytes, such as 4G or 512M, so it does not count: %s",
               asksSetting ? MemorySetting : MemoryVariable, text);
    return ZVMemoryLimit::Default;
}
}

ZVTaskShield::ZVTaskShield(const ZVWorkerCommand& command, const ZVWorkerRequest& request)
    : m_command(command), m_request(request)
{
}

ZVTaskShield::~ZVTaskShield()
{
    for (int32_t index = m_madeFolders.GetCount() - 1; index >= 0; --index)
        rmdir(ZVNativePath(m_madeFolders[index]));
}

bool ZVTaskShield::Lock()
{
    const ZVShield::Mode mode = ZVShield::ReadMode();
    if (mode == ZVShield::Mode::Off)
        return true;
    m_rules.MemoryLimit = ReadMemoryLimit(m_command.Needs);
    AllowProduct();
    AllowLog();
    AllowInput();
    AllowResults();
    AllowDisplay();
    if (Needs(m_command.Needs, ZVTaskNeeds::ChangesSources))
        for (const wchar_t* const folder : {ZVWorkerApp::SourceFolder, ZVWorkerApp::AppleProjectsFolder})
            Allow(folder, Change);
    return ZVShield::Lock(m_rules, mode);
}

// What every process of the product has. Its libraries are read and never written. Neither are components, so the data folder, in
// which they may be, is never opened as a whole.
void ZVTaskShield::AllowProduct()
{
    const ZVString install = CProcessInfo::Get().GetInstallPath();
    if (!ZVSystemFolders::IsShared(ResolveFolder(install)))
        Allow(install, Read);
    else
        for (const ZVSiblingLibrary& library : ZVSiblingLibraryTable)
            Allow(install + library.File, Read);
    if (IsSanitized)
        Allow(OwnProcessFolder, Read);
    // Each library looks for the block of the process, whose name goes at the end.
    Allow(SharedMemoryFolder + CProcessBlock::GetName(getpid()), Write);
    Allow(SharedMemoryFolder, DeleteFiles);
}

void ZVTaskShield::AllowLog()
{
    ILogManager* const manager = ZVLogManager::Find();
    const ZVString path = manager == nullptr ? L"" : manager->GetFilePath();
    if (path.IsEmpty())
        return;
    const ZVString folder = ZVPathLayout::FolderOf(path);
    // The first line makes the folder, which is too late if it comes from the task.
    if (manager->GetCategoryMask() != 0 && !ZVFileSystem::Exists(folder))
        ZVFileSystem::MakeDirectoryTree(folder, true);
    Allow(path, Write);
    // Another process may move a full log aside at any time, and a new one has to be made then.
    if (!IsInKernel(path) && !ZVSystemFolders::IsShared(ResolveFolder(folder)))
        Allow(folder, Change);
}

void ZVTaskShield::AllowInput()
{
    const ZVFilename input(m_request.Match.GetPath(InputParameter));
    const bool readsFilm = Needs(m_command.Needs, ZVTaskNeeds::ReadsFilm);
    if (!readsFilm && !Needs(m_command.Needs, ZVTaskNeeds::ReadsFile))
        return;
    if (readsFilm)
        Allow(DependencyInstaller::GetFolder(DependencyInstaller::AVCodec), Read);
    ZVString path = input.GetPathOnly();
    ZVFilename::ClearFileScheme(path);
    if (ZVFilename::IsRemote(path))
        return AllowInternet();
    ZVFilename::MakeFileSystemPath(path);
    if (!ZVFileSystem::IsDirectory(path))
        Allow(path, Read);
    if (readsFilm)
    {
        AllowFilm(input);
        // What is mounted where, and the labels of discs. Looking into the first costs more than a dozen other rules.
        Allow(OwnProcessFolder, Read);
        Allow(LabelFolder, List);
    }
}

void ZVTaskShield::AllowFilm(const ZVFilename& film)
{
    ZVString path = film.GetPathOnly();
    ZVFilename::ClearFileScheme(path);
    ZVFilename::MakeFileSystemPath(path);
    const ZVString extension = film.GetExtension(true);
    // On a DVD that has lost its main file this brings it back from the copy, which the locked process could not.
    if (extension.IsEqual(DvdExtension, false) || film.GetExtension().IsEqual(DvdExtension, false))
        AllowFolderOf(CDvdTitle::FindFolder(film));
    AllowFolderOf(path);
    const ZVString folder = ZVPathLayout::FolderOf(path);
    AllowFolderOf(folder);
    AllowDisc(path);
    for (const wchar_t* const bluray : BlurayExtensions)
        if (extension.IsEqual(bluray, false))
        {
            const ZVString disc = extension.IsEqual(PlaylistExtension, false) ? folder + L"../" : folder;
            AllowFolderOf(disc);
            Allow(disc + L"../" + DiscInformation, Read);
        }
}

// The whole disc, also when only a file of it is named. One that stands right in the home folder shares that with everything else.
void ZVTaskShield::AllowDisc(const ZVString& path)
{
    const ZVString resolved = Resolve(path);
    ZVString folded = resolved;
    folded.MakeLower();
    for (ZVString marker : DiscMarkers)
    {
        marker.MakeLower();
        const int32_t position = folded.FindLastOf(marker);
        if (position == -1)
            continue;
        const ZVString root = resolved.Left(position + 1);
        Allow(resolved.Left(position + marker.GetLength()), Read);
        Allow(root + DiscInformation, Read);
        Allow(root, ZVSystemFolders::IsShared(root) ? List : Read);
    }
}

void ZVTaskShield::AllowFolderOf(const ZVString& path)
{
    const ZVString folder = ResolveFolder(path);
    if (!folder.IsEmpty() && !ZVSystemFolders::IsShared(folder))
        Allow(folder, Read);
}

// The task was told to ask the internet.
void ZVTaskShield::AllowInternet()
{
    m_rules.Sockets = ZVShieldRules::Network::Internet;
    for (const wchar_t* const file : InternetFiles)
        Allow(file, Read);
    Allow(GetEnvironment("SSL_CERT_FILE"), Read);
}

void ZVTaskShield::AllowResults()
{
    if (Needs(m_command.Needs, ZVTaskNeeds::WritesResult))
    {
        const ZVString path = Needs(m_command.Needs, ZVTaskNeeds::AsksDisplay)
                                  ? m_request.CommandLine.GetPath(DisplayResultArgument)
                                  : m_request.Match.GetPath(ResultParameter);
        const ZVString result = ZVFileSystem::GetSavePath(path);
        MakeFolders(ZVPathLayout::FolderOf(result));
        AllowResult(result);
    }
    if (Needs(m_command.Needs, ZVTaskNeeds::WritesPicture))
    {
        for (const int32_t parameter : {ResultParameter, MetadataParameter})
            AllowResult(ZVFilename(m_request.Match.GetPath(parameter)).GetPathOnly());
        AllowTransfers(AllowTemporaryFiles());
    }
    // Asking for the folder writes to the disk, and only films of one family have such a cover.
    else if (Needs(m_command.Needs, ZVTaskNeeds::WritesCover) &&
             ZVFileTypes::IsInClass(ZVFilename(m_request.Match.GetPath(InputParameter)).GetExtension(true),
                                    IZVFileTypes::ClassMp4))
        AllowTemporaryFiles();
}

// A result is written beside its place and renamed. A folder is never replaced by one.
void ZVTaskShield::AllowResult(const ZVString& path)
{
    if (path.IsEmpty() || ZVFileSystem::IsDirectory(path))
        return;
    ZVString result = path;
    ZVFilename::MakeFileSystemPath(result);
    Allow(result, Write);
    if (IsInKernel(result))
        return;
    const ZVString broken = ReadBrokenLink(result);
    const ZVString target = broken.IsEmpty() ? Resolve(result) : broken;
    for (const ZVString& place : {result, target})
    {
        const ZVString folder = place.IsEmpty() ? ZVString() : Resolve(ZVPathLayout::FolderOf(place));
        if (folder.IsEmpty())
            continue;
        if (ZVSystemFolders::IsShared(folder))
            Source.Log("A result is in a folder that holds much else, and the lock opens all of it: %s", folder);
        Allow(folder, Change);
    }
}

ZVString ZVTaskShield::AllowTemporaryFiles()
{
    const ZVString folder = ZVFileSystem::GetDirectoryTemp();
    Allow(folder, Change);
    // The task asks the settings for the folder once more.
    for (const wchar_t* const file : SettingsFiles)
        Allow(ZVFileSystem::GetDirectoryAppData() + file, Write);
    return folder;
}

// A cover is made in the folder for temporary files, and moved from there.
void ZVTaskShield::AllowTransfers(const ZVString& temporary)
{
    const ZVString picture = ZVFilename(m_request.Match.GetPath(ResultParameter)).GetPathOnly();
    if (ZVProgramFiles::AreOnOneMount(temporary, ZVPathLayout::FolderOf(picture)))
        return;
    m_rules.RunsPrograms = true;
    Allow(ZVProgramFiles::GetInterpreter(), Run);
    for (const char* const program : TransferPrograms)
        Allow(ZVProgramFiles::Find(program), Run);
}

void ZVTaskShield::AllowDisplay()
{
    if (!Needs(m_command.Needs, ZVTaskNeeds::AsksDisplay))
        return;
    if (IsDisplayRemote())
        AllowInternet();
    else
        m_rules.Sockets = ZVShieldRules::Network::Local;
    const ZVString authority = GetEnvironment("XAUTHORITY");
    Allow(authority.IsEmpty() ? ZVFileSystem::GetDirectoryHome() + L".Xauthority" : authority, Read);
}

// A folder that cannot be made is reported when the result is written.
void ZVTaskShield::MakeFolders(const ZVString& folder)
{
    if (ZVFileSystem::IsDirectory(folder))
        return;
    for (int32_t end = folder.Find(L'/', 1); end != -1; end = folder.Find(L'/', end + 1))
    {
        const ZVString step = folder.Left(end);
        if (ZVFileSystem::Exists(step))
            continue;
        if (mkdir(ZVNativePath(step), NewFolderMode) != 0)
            return;
        if (m_madeFolders.IsEmpty())
            Allow(ZVPathLayout::FolderOf(step), DeleteFolders);
        m_madeFolders.Add(step);
    }
}
