#include "system/component/DependencyInstaller.h"

#include "contracts/IZVNamedLocks.h"
#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "contracts/ZVReleasePointer.h"
#include "core/ZVToolsPointer.h"
#include "system/component/DependencyTable.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/CProcessInfo.h"
#include "system/library/ZVDllString.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"

#include <memory>

namespace
{
constexpr wchar_t PluginsFolder[] = L"Plugins/";
constexpr wchar_t SettingsSection[] = L"Dependencies";

// Every process of the product knows the lock by this name.
constexpr wchar_t LockName[] = L"Zivora DS Filter Downloading Lock";
constexpr int32_t LockTimeoutMs = 120000;

const Dependency* FindDependency(int32_t id)
{
    return DependencyTable::Find(DependencyTable::Map(id));
}

ZVString GetField(int32_t id, const wchar_t* Dependency::*field)
{
    const Dependency* const dependency = FindDependency(id);
    return dependency == nullptr ? ZVString() : ZVString(dependency->*field);
}

ZVString GetFolderName(int32_t id)
{
    const Dependency* const dependency = FindDependency(id);
    if (dependency == nullptr || *dependency->Package == L'\0')
        return ZVString();
    return ZVFormat(L"%s_v%s", dependency->Package, dependency->Version);
}

// The folder of a name below the data folder, or where a packager has put it when it is only there.
ZVString FindFolder(const ZVString& name)
{
    const ZVString own = ZVFileSystem::GetDirectoryAppData() + PluginsFolder + name + L"/";
    const ZVString packaged = CProcessInfo::Get().GetInstallPath() + ZVString(PluginsFolder) + name + L"/";
    return !ZVFileSystem::IsDirectory(own) && ZVFileSystem::IsDirectory(packaged) ? packaged : own;
}

class FolderRecord
{
public:
    explicit FolderRecord(int32_t id)
        : m_settings(g_pZVTools == nullptr ? nullptr : g_pZVTools->GetSettings(true)),
          m_name(ZVString::FromInt(DependencyTable::Map(id)))
    {
    }

    ZVString Get() const
    {
        ZVString value;
        ZVDllString view(value);
        if (m_settings != nullptr)
            m_settings->GetSetting(SettingsSection, m_name, view);
        return value;
    }

    void Set(const ZVString& folderName) const
    {
        if (m_settings != nullptr)
            m_settings->SetSetting(SettingsSection, m_name, folderName);
    }

private:
    IZVSettings* m_settings;
    ZVString m_name;
};

using LockPointer = ZVReleasePointer<IZVNamedLock>;

LockPointer TakeLock(const ZVLogScope& scope, int32_t id)
{
    IZVNamedLocks* const locks = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetNamedLocks(true);
    LockPointer lock(locks == nullptr ? nullptr : locks->CreateLock(LockName));
    if (lock != nullptr && !lock->Lock(LockTimeoutMs))
        scope.Log("Timed out waiting for a named lock. Checking for dependency %d", id);
    return lock;
}
}

ZVString DependencyInstaller::GetPackageName(int32_t id)
{
    return GetField(id, &Dependency::Package);
}

ZVString DependencyInstaller::GetDisplayName(int32_t id)
{
    return GetField(id, &Dependency::DisplayName);
}

ZVString DependencyInstaller::GetMainFile(int32_t id)
{
    return GetField(id, &Dependency::MainFile);
}

ZVString DependencyInstaller::GetVersion(int32_t id)
{
    return GetField(id, &Dependency::Version);
}

ZVString DependencyInstaller::GetFolder(int32_t id)
{
    const ZVString name = GetFolderName(id);
    return name.IsEmpty() ? name : FindFolder(name);
}

ZVString DependencyInstaller::GetInstalledFilename(int32_t id, bool install)
{
    const ZVLogScope scope(ZVLogCategory::Network, "DependencyInstaller::GetInstalledFilename", true);
    const ZVString mainFile = GetMainFile(id);
    const ZVString folderName = GetFolderName(id);
    if (folderName.IsEmpty())
        return mainFile;

    const FolderRecord record(id);
    const ZVString recorded = record.Get();
    if (!recorded.IsEmpty() && ZVFileSystem::Exists(FindFolder(recorded) + mainFile))
        return FindFolder(recorded) + mainFile;
    if (!install)
        return ZVString();

    const LockPointer lock = TakeLock(scope, id);
    if (!ZVFileSystem::Exists(GetFolder(id) + mainFile))
    {
        scope.Log("Dependency '%s' (%d) is missing, installing", GetDisplayName(id), id);
        if (!Install(id))
        {
            scope.Log("Failed installing dependency %d", id);
            return ZVString();
        }
    }
    record.Set(folderName);
    return GetFolder(id) + mainFile;
}
