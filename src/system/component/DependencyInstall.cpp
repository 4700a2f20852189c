#include "system/component/ComponentArchive.h"
#include "system/component/DependencyDownloadThread.h"
#include "system/component/DependencyInstaller.h"
#include "system/component/DependencyTable.h"

#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/file/ZVFileFinder.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/RunProgram.h"
#include "system/library/ZVDllString.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"

#include <cstdlib>

namespace
{
constexpr char ServerVariable[] = "ZV_COMPONENT_SERVER";

constexpr int32_t ChecksumLength = 64;
constexpr int64_t MaximumChecksumFile = 4096;

// The renderer whose users have files of their own in its folder.
constexpr int32_t Renderer = 13;
constexpr wchar_t RendererLookUpTables[] = L"3dlut";
constexpr wchar_t RendererOwnExtension[] = L"bin";
constexpr wchar_t RendererSettings[] = L"settings.bin";
constexpr wchar_t RendererSavedSettings[] = L"settings_temp.bin";

// Deletes a file when it goes out of scope.
class TemporaryFile
{
public:
    explicit TemporaryFile(const ZVString& path) : m_path(path) {}
    ~TemporaryFile()
    {
        if (ZVFileSystem::Exists(m_path))
            ZVFileSystem::DeleteFile(m_path);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const ZVString& GetPath() const { return m_path; }

private:
    ZVString m_path;
};

// One installation, step by step. Each step is false when it failed.
class Installation
{
public:
    Installation(int32_t id, const Dependency& dependency, const ZVLogScope& scope)
        : m_id(id),
          m_dependency(dependency),
          m_scope(scope),
          m_plugins(ZVFileSystem::GetDirectoryAppData() + L"Plugins/"),
          m_folderName(ZVFormat(L"%s_v%s", dependency.Package, dependency.Version)),
          m_folder(m_plugins + m_folderName + L"/"),
          m_archiveName(m_folderName + dependency.Archive)
    {
    }

    bool Run()
    {
        const ZVString server = FindServer();
        if (server.IsEmpty())
        {
            m_scope.Log("There is no component server: neither %s nor a setting names one", ServerVariable);
            return false;
        }
        const ZVString url = server + m_archiveName;
        const ZVString text = ZVFormat(L"%s %s", L"Adding required components...", m_dependency.DisplayName);
        DependencyDownloadThread download(url, text);
        const bool isLoaded = Wait(download);
        const TemporaryFile archive(download.GetPath());
        if (!isLoaded)
        {
            m_scope.Log("Downloading package failed");
            return false;
        }
        m_scope.Log("Download of package %s finished", m_archiveName);
        return IsTrusted(url, archive.GetPath()) && Replace(archive.GetPath());
    }

private:
    static bool Wait(DependencyDownloadThread& download)
    {
        if (!download.Start(0, false, 0))
            return false;
        download.WaitForExit();
        return download.Stop(ZVThread::NoTimeout);
    }

    static ZVString FindServer()
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

    // Everything that can be found out before old files go.
    bool IsTrusted(const ZVString& url, const ZVString& archive) const
    {
        if (!ZVFileSystem::MakeDirectoryTree(m_plugins) || !HasChecksum(url, archive))
            return false;
        return ComponentArchive::Check(archive, m_plugins);
    }

    bool HasChecksum(const ZVString& url, const ZVString& archive) const
    {
        CFileLoader loader;
        loader.SetLimits(MaximumChecksumFile, false);
        ZVString expected;
        if (!loader.LoadText(ZVFilename(url + L".sha256"), expected, ZVEncoding::UTF8, false))
        {
            const bool isAbsent =
                ZVFilename::IsRemote(url) ? loader.GetStatusCode() == L"404" : !ZVFileSystem::Exists(url + L".sha256");
            m_scope.Log(isAbsent ? "Package %s has no checksum" : "The checksum of package %s did not load", m_archiveName);
            return isAbsent;
        }
        ZVStringArray parameters;
        parameters.Add(ZVString(L"<") + archive.QuoteForShell());
        ZVString actual;
        RunProgram(L"sha256sum", parameters, &actual, ZVRunMode::Blocking, nullptr);
        expected.TrimWhitespace();
        const bool isEqual = actual.GetLength() > ChecksumLength && expected.GetLength() >= ChecksumLength &&
                             actual.Left(ChecksumLength).IsEqual(expected.Left(ChecksumLength), false);
        if (!isEqual)
            m_scope.Log("Package %s is not the one that its checksum tells of", m_archiveName);
        return isEqual;
    }

    bool Replace(const ZVString& archive) const
    {
        const struct
        {
            bool (Installation::*Step)(const ZVString& archive) const;
            const char* Failure;
        } steps[] = {
            {&Installation::DeleteOldFiles, "Deleting old files failed"       },
            {&Installation::PreserveFiles,  "Moving preserved files failed"   },
            {&Installation::Unpack,         "Unpacking files failed"          },
            {&Installation::RestoreFiles,   "Restoring preserved files failed"},
        };
        for (const auto& step : steps)
            if (!(this->*step.Step)(archive))
            {
                m_scope.Log(step.Failure);
                return false;
            }
        ZVFileSystem::DeleteFile(archive);
        m_scope.Log("Unpacking finished");
        const bool isThere = ZVFileSystem::Exists(m_folder + m_dependency.MainFile);
        if (!isThere)
            m_scope.Log("Package %s has no file %s", m_archiveName, m_dependency.MainFile);
        return isThere;
    }

    bool DeleteOldFiles(const ZVString&) const
    {
        if (m_id == Renderer)
            return DeleteRendererFiles();
        return !DependencyTable::KeepsOneVersion(m_id) || DeleteVersions();
    }

    bool DeleteVersions() const
    {
        bool isDone = true;
        ZVFileFinder finder;
        finder.Find(ZVFilename::FromPath(m_plugins));
        for (ZVFileInfo info; finder.GetNext(info);)
            if (info.IsDirectory() && info.GetName().StartsWith(ZVString(m_dependency.Package) + L"_v"))
                isDone = ZVFileSystem::DeleteDirectoryTree(info.GetPath(), false) && isDone;
        return isDone;
    }

    bool DeleteRendererFiles() const
    {
        bool isDone = true;
        ZVFileFinder finder;
        finder.Find(ZVFilename::FromPath(m_folder));
        for (ZVFileInfo info; finder.GetNext(info);)
        {
            const bool isOwn = info.IsDirectory() ? info.GetName().IsEqual(RendererLookUpTables, false)
                                                  : info.GetFilename().GetExtension().IsEqual(RendererOwnExtension, false);
            if (!isOwn)
                isDone = (info.IsDirectory() ? ZVFileSystem::DeleteDirectoryTree(info.GetPath(), false)
                                             : ZVFileSystem::DeleteFile(info.GetPath())) &&
                         isDone;
        }
        return isDone;
    }

    // What an installation that did not come to its end has saved is the user's; the file in its place may be the archive's.
    bool PreserveFiles(const ZVString&) const
    {
        const ZVString settings = m_folder + RendererSettings;
        const ZVString saved = m_folder + RendererSavedSettings;
        return m_id != Renderer || !ZVFileSystem::Exists(settings) || ZVFileSystem::Exists(saved) ||
               ZVFileSystem::CopyFile(settings, saved);
    }

    bool Unpack(const ZVString& archive) const
    {
        // Into a folder that is there, since it may hold files of the user's own.
        if (ZVFileSystem::IsDirectory(m_folder))
            return ComponentArchive::Unpack(archive, m_folder);
        // Otherwise under another name until it is whole: half a component would pass for an installed one.
        const ZVString part = m_plugins + m_folderName + L".part/";
        if (ZVFileSystem::Exists(part) && !ZVFileSystem::DeleteDirectoryTree(part, false))
            return false;
        if (ZVFileSystem::MakeDirectoryTree(part) && ComponentArchive::Unpack(archive, part) &&
            ZVFileSystem::MoveFile(part, m_folder))
            return true;
        ZVFileSystem::DeleteDirectoryTree(part, false);
        return false;
    }

    bool RestoreFiles(const ZVString&) const
    {
        const ZVString saved = m_folder + RendererSavedSettings;
        return m_id != Renderer || !ZVFileSystem::Exists(saved) ||
               (ZVFileSystem::CopyFile(saved, m_folder + RendererSettings) && ZVFileSystem::DeleteFile(saved));
    }

    int32_t m_id;
    const Dependency& m_dependency;
    const ZVLogScope& m_scope;
    ZVString m_plugins;
    ZVString m_folderName;
    ZVString m_folder;
    ZVString m_archiveName;
};
}

bool DependencyInstaller::Install(int32_t id)
{
    ZVLogScope scope(ZVLogCategory::Network, "DependencyInstaller::Install", true);
    const Dependency* const dependency = DependencyTable::Find(DependencyTable::Map(id));
    if (dependency == nullptr || *dependency->Package == L'\0')
    {
        scope.Log("There is no package of dependency %d", id);
        return false;
    }
    const bool isInstalled = Installation(DependencyTable::Map(id), *dependency, scope).Run();
    scope.SetResult(isInstalled);
    return isInstalled;
}
