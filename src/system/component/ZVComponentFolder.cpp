#include "system/component/ZVComponentFolder.h"

#include "system/component/ZVComponentTable.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/CProcessInfo.h"

namespace
{
constexpr wchar_t PluginsFolder[] = L"Plugins/";
}

ZVString ZVComponentFolder::GetParent()
{
    return ZVFileSystem::GetDirectoryAppData() + PluginsFolder;
}

ZVString ZVComponentFolder::GetName(const ZVComponent& component)
{
    return component.HasPackage() ? ZVFormat(L"%s_v%s", component.Package, component.Version) : ZVString();
}

ZVString ZVComponentFolder::Find(const ZVString& name)
{
    const ZVString own = GetParent() + name + L"/";
    const ZVString packaged = CProcessInfo::Get().GetInstallPath() + ZVString(PluginsFolder) + name + L"/";
    return !ZVFileSystem::IsDirectory(own) && ZVFileSystem::IsDirectory(packaged) ? packaged : own;
}
