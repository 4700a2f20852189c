#include "system/component/DependencyInstaller.h"

#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/component/ZVComponentFolder.h"
#include "system/component/ZVComponentInstallation.h"
#include "system/component/ZVComponentLock.h"
#include "system/component/ZVComponentTable.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/ZVDllString.h"
#include "system/log/ZVLogScope.h"

namespace
{
constexpr ZVLogSource GetInstalledFilenameSource {ZVLogCategory::Network, L"DependencyInstaller::GetInstalledFilename"};
constexpr ZVLogSource InstallSource {ZVLogCategory::Network, L"DependencyInstaller::Install"};

constexpr wchar_t SettingsSection[] = L"Dependencies";

// The setting that holds the name of the folder in which a component was last found.
class FolderRecord
{
public:
    explicit FolderRecord(const ZVComponent& component)
        : m_settings(g_pZVTools == nullptr ? nullptr : g_pZVTools->GetSettings(true)), m_name(ZVString::FromInt(component.Number))
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
}

ZVString DependencyInstaller::GetInstalledFilename(int32_t id, bool install)
{
    const ZVLogScope scope(GetInstalledFilenameSource, true);
    const ZVString mainFile = GetMainFile(id);
    const ZVComponent* const component = ZVComponentTable::Find(ZVComponentTable::Map(id));
    if (component == nullptr || !component->HasPackage())
        return mainFile;

    // This comes first because it may delete an older version that the record names.
    if (install)
        ZVComponentInstallation(*component).FinishEarlier();
    const FolderRecord record(*component);
    const ZVString recorded = record.Get();
    if (!recorded.IsEmpty() && ZVFileSystem::Exists(ZVComponentFolder::Find(recorded) + mainFile))
        return ZVComponentFolder::Find(recorded) + mainFile;
    if (!install)
        return ZVString();

    const ZVComponentLock lock(ZVComponentLock::Fetching);
    if (lock.IsRefused())
        scope.Log("Timed out waiting for a named lock. Checking for dependency %d", id);
    if (!ZVFileSystem::Exists(GetFolder(id) + mainFile))
    {
        scope.Log("Dependency '%s' (%d) is missing, installing", GetDisplayName(id), id);
        if (!Install(id))
        {
            scope.Log("Failed installing dependency %d", id);
            return ZVString();
        }
    }
    record.Set(ZVComponentFolder::GetName(*component));
    return GetFolder(id) + mainFile;
}

bool DependencyInstaller::Install(int32_t id)
{
    ZVLogScope scope(InstallSource, true);
    const ZVComponent* const component = ZVComponentTable::Find(ZVComponentTable::Map(id));
    if (component == nullptr || !component->HasPackage())
    {
        scope.Log("There is no package of dependency %d", id);
        return false;
    }
    const bool isInstalled = ZVComponentInstallation(*component).Run();
    scope.SetResult(isInstalled);
    return isInstalled;
}
