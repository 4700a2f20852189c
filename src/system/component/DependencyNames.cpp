// What DependencyInstaller tells about a component without installing it. This is a file of its own so that the worker, which
// installs nothing, does not link the installation with all that it needs: that would make every start slower.

#include "system/component/DependencyInstaller.h"
#include "system/component/ZVComponentFolder.h"
#include "system/component/ZVComponentTable.h"

namespace
{
const ZVComponent* FindComponent(int32_t id)
{
    return ZVComponentTable::Find(ZVComponentTable::Map(id));
}

ZVString GetField(int32_t id, const wchar_t* ZVComponent::*field)
{
    const ZVComponent* const component = FindComponent(id);
    return component == nullptr ? ZVString() : ZVString(component->*field);
}
}

ZVString DependencyInstaller::GetPackageName(int32_t id)
{
    return GetField(id, &ZVComponent::Package);
}

ZVString DependencyInstaller::GetDisplayName(int32_t id)
{
    return GetField(id, &ZVComponent::DisplayName);
}

ZVString DependencyInstaller::GetMainFile(int32_t id)
{
    return GetField(id, &ZVComponent::MainFile);
}

ZVString DependencyInstaller::GetVersion(int32_t id)
{
    return GetField(id, &ZVComponent::Version);
}

ZVString DependencyInstaller::GetFolder(int32_t id)
{
    const ZVComponent* const component = FindComponent(id);
    return component == nullptr || !component->HasPackage() ? ZVString()
                                                            : ZVComponentFolder::Find(ZVComponentFolder::GetName(*component));
}
