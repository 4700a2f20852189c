#include "system/component/ZVComponentInstallation.h"

#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/component/DependencyDownloadThread.h"
#include "system/component/ZVComponentArchive.h"
#include "system/component/ZVComponentChecksum.h"
#include "system/component/ZVComponentFolder.h"
#include "system/component/ZVComponentKeptFiles.h"
#include "system/component/ZVComponentLock.h"
#include "system/component/ZVComponentStaging.h"
#include "system/component/ZVComponentTable.h"
#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"
#include "system/library/ZVDllString.h"
#include "system/log/ZVLog.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"DependencyInstaller::Install"};

constexpr char ServerVariable[] = "ZV_COMPONENT_SERVER";
constexpr wchar_t ChecksumEnding[] = L".sha256";
constexpr int64_t MaximumChecksumFile = 4096;

constexpr char DeletingFailed[] = "Deleting old files failed";
constexpr char PreservingFailed[] = "Moving preserved files failed";
constexpr char UnpackingFailed[] = "Unpacking files failed";
constexpr char RestoringFailed[] = "Restoring preserved files failed";

// Deletes a file when it goes out of scope.
class TemporaryFile
{
public:
    explicit TemporaryFile(const ZVString& path) : m_path(path) {}
    ~TemporaryFile() { Delete(); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const ZVString& GetPath() const { return m_path; }
    void Delete() const
    {
        if (ZVFileSystem::Exists(m_path))
            ZVFileSystem::DeleteFile(m_path);
    }

private:
    ZVString m_path;
};

bool Fail(const char* text)
{
    Source.Log(text);
    return false;
}

bool Wait(DependencyDownloadThread& download)
{
    if (!download.Start(0, false, 0))
        return false;
    download.WaitForExit();
    return download.Stop(ZVThread::NoTimeout);
}

ZVString FindServer()
{
    ZVString server = ZVString::FromUTF8(getenv(ServerVariable));
    IZVSettings* const settings = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetSettings(true);
    ZVDllString view(server);
    if (server.IsEmpty() && settings != nullptr)
        settings->GetSetting(L"Dependencies", L"Server", view);
    if (server.StartsWith(L"file://", false))
        ZVFilename::ConvertPathStyle(server, ZVPathStyle::FileURL, ZVPathStyle::URLPath);
    return server.IsEmpty() || server.EndsWith(L'/') ? server : server + L"/";
}
}

ZVComponentInstallation::ZVComponentInstallation(const ZVComponent& component)
    : m_component(component),
      m_folderName(ZVComponentFolder::GetName(component)),
      m_archiveName(m_folderName + component.Archive),
      m_components(ZVNativePath(ZVComponentFolder::GetParent()).Get()),
      m_folder(m_components / ZVNativePath(m_folderName).Get())
{
}

bool ZVComponentInstallation::Run() const
{
    const ZVString server = FindServer();
    if (server.IsEmpty())
    {
        Source.Log("There is no component server: neither %s nor a setting names one", ServerVariable);
        return false;
    }
    const std::unique_ptr<ZVComponentStaging> staging = Prepare();
    if (staging == nullptr)
        return false;

    const ZVString url = server + m_archiveName;
    const ZVString text = ZVFormat(L"%s %s", L"Adding required components...", m_component.DisplayName);
    DependencyDownloadThread download(url, text);
    const bool isLoaded = Wait(download);
    const TemporaryFile archive(download.GetPath());
    if (!isLoaded)
        return Fail("Downloading package failed");
    Source.Log("Download of package %s finished", m_archiveName);
    if (!IsTrusted(url, archive.GetPath()) || !Replace(archive.GetPath(), *staging))
        return false;
    archive.Delete();
    Source.Log("Unpacking finished");
    return HasMainFile(m_folder);
}

void ZVComponentInstallation::FinishEarlier() const
{
    if (!ZVComponentStaging::HasAny(m_components, GetPackage()))
        return;
    const ZVComponentLock lock(ZVComponentLock::Replacing, 0);
    if (!lock.IsHeld())
        return;
    ClearRemains();
    if (!HasMainFile(m_folder) || FindOldVersions().empty())
        return;
    ZVComponentStaging staging(m_components, m_folder.filename());
    if (staging.IsThere())
        DeleteOld(staging);
}

// Makes the folder to work in; null, with a line in the log, when that fails.
std::unique_ptr<ZVComponentStaging> ZVComponentInstallation::Prepare() const
{
    const ZVComponentLock lock(ZVComponentLock::Replacing);
    if (lock.IsHeld())
        ClearRemains();
    auto staging = std::make_unique<ZVComponentStaging>(m_components, m_folder.filename());
    if (staging->IsThere())
        return staging;
    Source.Log("No folder can be made in %s: %s", m_components.c_str(), strerror(errno));
    return nullptr;
}

// Called under the lock: otherwise an installation that starts at the same time could lose the archive that it downloads.
void ZVComponentInstallation::ClearRemains() const
{
    if (!ZVComponentStaging::ClearRemains(m_components, GetPackage()))
        return;
    const ZVString start = m_component.Package + ZVString(L"_v");
    const ZVString extension = m_archiveName.Mid(m_archiveName.ReverseFind(L'.'));
    ZVFileFinder finder;
    finder.Find(ZVFilename::FromPath(ZVFileSystem::GetDirectoryTemp()));
    for (ZVFileInfo info; finder.GetNext(info);)
    {
        const ZVString name = info.GetName();
        const bool isRemains =
            (name.StartsWith(start) && name.EndsWith(extension)) || name.StartsWith(ZVFileSystem::WriteTestStart);
        if (isRemains && !info.IsDirectory())
            ZVFileSystem::DeleteFile(info.GetPath());
    }
}

bool ZVComponentInstallation::IsTrusted(const ZVString& url, const ZVString& archive) const
{
    return MatchesChecksum(url, archive) && ZVComponentArchive::Check(archive, ZVComponentFolder::GetParent());
}

bool ZVComponentInstallation::MatchesChecksum(const ZVString& url, const ZVString& archive) const
{
    CFileLoader loader;
    loader.SetLimits(MaximumChecksumFile, false);
    ZVString expected;
    if (!loader.LoadText(ZVFilename(url + ChecksumEnding), expected, ZVEncoding::Detect, false))
    {
        const bool isAbsent =
            ZVFilename::IsRemote(url) ? loader.GetStatusCode() == L"404" : !ZVFileSystem::Exists(url + ChecksumEnding);
        Source.Log(isAbsent ? "Package %s has no checksum" : "The checksum of package %s did not load", m_archiveName);
        return isAbsent;
    }
    expected = ZVComponentChecksum::Read(expected);
    const bool isEqual = !expected.IsEmpty() && expected.IsEqual(ZVComponentChecksum::OfFile(archive), false);
    if (!isEqual)
        Source.Log("Package %s is not the one that its checksum tells of", m_archiveName);
    return isEqual;
}

bool ZVComponentInstallation::Replace(const ZVString& archive, ZVComponentStaging& staging) const
{
    if (!ZVComponentArchive::Unpack(archive, staging.GetNew()) || !staging.WriteThrough())
        return Fail(UnpackingFailed);
    if (!HasMainFile(staging.GetNew()))
    {
        Source.Log("Package %s has no file %s", m_archiveName, m_component.MainFile);
        return false;
    }
    // From here on the old component must not change.
    const ZVComponentLock lock(ZVComponentLock::Replacing);
    if (lock.IsRefused())
        return Fail("Timed out waiting for another installation");
    const ZVComponentKeptFiles kept(m_component.Number, m_folder, staging.GetNew(), staging.GetPath());
    if (!kept.Preserve())
        return Fail(PreservingFailed);
    if (!kept.Restore())
        return Fail(RestoringFailed);
    if (!staging.PutInPlace(m_folder))
        return Fail(UnpackingFailed);
    return DeleteOld(staging) || Fail(DeletingFailed);
}

// A version is first taken away as a whole: deleted file by file, half of it could pass for an installed component.
bool ZVComponentInstallation::DeleteOld(ZVComponentStaging& staging) const
{
    bool isDone = true;
    for (const Path& version : FindOldVersions())
        isDone = staging.TakeAway(version) && isDone;
    return staging.Remove() && isDone;
}

std::vector<std::filesystem::path> ZVComponentInstallation::FindOldVersions() const
{
    std::vector<Path> versions;
    if (!ZVComponentTable::KeepsOneVersion(m_component.Number))
        return versions;
    const ZVString start = m_component.Package + ZVString(L"_v");
    ZVFileFinder finder;
    finder.Find(ZVFilename::FromPath(ZVComponentFolder::GetParent()));
    for (ZVFileInfo info; finder.GetNext(info);)
    {
        const Path version = m_components / ZVNativePath(info.GetName()).Get();
        if (info.IsDirectory() && info.GetName().StartsWith(start) && version != m_folder &&
            !ZVComponentStaging::IsStaging(version))
            versions.push_back(version);
    }
    return versions;
}

std::string ZVComponentInstallation::GetPackage() const
{
    return ZVNativePath(m_component.Package).GetBytes();
}

bool ZVComponentInstallation::HasMainFile(const Path& folder) const
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(folder / ZVNativePath(m_component.MainFile).Get(), ignored);
}
