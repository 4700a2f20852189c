#include "system/library/ZVSiblingLibraries.h"

#include "contracts/IZVApplicationInformation.h"
#include "contracts/IZVSiblingInterface.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "system/library/CProcessInfo.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string_view>

namespace
{
constexpr wchar_t ToolsMissing[] = L"Failed to load ZVTools";
constexpr wchar_t ToolsErrorUnknown[] = L"Unknown error loading product information";

constinit std::recursive_mutex s_mutex;

using Lock = std::lock_guard<std::recursive_mutex>;

// What the tools library is told about the process.
class ApplicationInformation final : public IZVApplicationInformation
{
public:
    const wchar_t* GetProductName() override { return L""; }
    const wchar_t* GetInstallDirectory() override { return CProcessInfo::Get().GetInstallPath(); }
    const wchar_t* GetDataDirectory() override { return L""; }
};

constinit ApplicationInformation s_applicationInformation;

// Where to load a library from.
ZVString GetLibraryPath(const ZVSiblingLibrary& library, const ZVString& path)
{
    const std::wstring_view view = path.View();
    if (!view.starts_with(L"\\\\") && view.substr(std::min<size_t>(1, view.size()), 2) != L":\\")
        return CProcessInfo::Get().GetInstallPath() + ZVString(library.File);
    ZVString rooted = path;
    rooted.Replace(L"\\", L"/");
    return rooted.EndsWith(L'/') ? rooted + library.File : rooted;
}
}

ZVSiblingLibraries& ZVSiblingLibraries::Get()
{
    static ZVSiblingLibraries& s_libraries = *new ZVSiblingLibraries();
    return s_libraries;
}

void ZVSiblingLibraries::SetFlag(int32_t flag)
{
    const Lock lock(s_mutex);
    m_flag = flag;
}

bool ZVSiblingLibraries::Load(ZVSibling sibling, const ZVString& path)
{
    const Lock lock(s_mutex);
    Slot& slot = GetSlot(sibling);
    if (slot.Library.IsLoaded())
        return true;
    const ZVSiblingLibrary& library = GetSiblingLibrary(sibling);
    if (slot.Library.Load(GetLibraryPath(library, path)))
        Start(library, slot);
    else if (sibling == ZVSibling::Tools)
        m_toolsError = ToolsMissing;
    return slot.Library.IsLoaded();
}

void ZVSiblingLibraries::Start(const ZVSiblingLibrary& library, Slot& slot)
{
    switch (library.Start)
    {
    case ZVSiblingStart::Tools:
        StartTools(library, slot);
        break;
    case ZVSiblingStart::Interface:
        if (auto* const getter = slot.Library.GetFunction<IZVSiblingInterface*()>(library.EntryPoint))
            slot.Interface = getter();
        if (slot.Interface != nullptr)
            static_cast<IZVSiblingInterface*>(slot.Interface)->Initialize(m_flag);
        break;
    case ZVSiblingStart::Function:
        if (auto* const initialize = slot.Library.GetFunction<void(int32_t)>(library.EntryPoint))
            initialize(m_flag);
        break;
    }
}

void ZVSiblingLibraries::StartTools(const ZVSiblingLibrary& library, Slot& slot)
{
    auto* const getter = slot.Library.GetFunction<IZVTools*(int32_t)>(library.EntryPoint);
    IZVTools* const tools = getter == nullptr ? nullptr : getter(IZVTools::InterfaceVersion);
    if (tools == nullptr)
    {
        m_toolsError = ToolsMissing;
        slot.Library.Unload();
        return;
    }
    if (!tools->Initialize(m_flag, &s_applicationInformation))
    {
        m_toolsError = tools->GetLoadError();
        if (m_toolsError.IsEmpty())
            m_toolsError = ToolsErrorUnknown;
        slot.Library.Unload();
        return;
    }
    m_toolsError.Empty();
    slot.Interface = tools;
    g_pZVTools = tools;
}

ZVString ZVSiblingLibraries::GetToolsError() const
{
    const Lock lock(s_mutex);
    return m_toolsError;
}

void* ZVSiblingLibraries::GetInterface(ZVSibling sibling) const
{
    const Lock lock(s_mutex);
    return GetSlot(sibling).Interface;
}

void* ZVSiblingLibraries::GetReaderFactory(const char* name)
{
    const Lock lock(s_mutex);
    if (!LoadReader())
        return nullptr;
    for (int32_t index = 0; index < ZVReaderFactoryCount; ++index)
    {
        if (strcmp(ZVReaderFactoryNames[index], name) != 0)
            continue;
        void*& factory = m_readerFactories[index];
        if (factory == nullptr)
            factory = GetSlot(ZVSibling::Reader).Library.GetSymbol(name);
        return factory;
    }
    return nullptr;
}

void ZVSiblingLibraries::Unload(ZVSibling sibling)
{
    const Lock lock(s_mutex);
    Slot& slot = GetSlot(sibling);
    if (!slot.Library.IsLoaded())
        return;
    const ZVSiblingLibrary& library = GetSiblingLibrary(sibling);
    if (library.Uninitialize != nullptr)
        if (auto* const uninitialize = slot.Library.GetFunction<void()>(library.Uninitialize))
            uninitialize();
    if (sibling == ZVSibling::Tools)
        g_pZVTools = nullptr;
    if (sibling == ZVSibling::Reader)
        std::fill_n(m_readerFactories, ZVReaderFactoryCount, nullptr);
    slot.Interface = nullptr;
    slot.Library.Unload();
}

void ZVSiblingLibraries::UnloadAll()
{
    const Lock lock(s_mutex);
    for (int32_t index = ZVSiblingCount - 1; index >= 0; --index)
        Unload(static_cast<ZVSibling>(index));
}
