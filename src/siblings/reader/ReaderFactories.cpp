// The entry points of the library: what it needs from the process, and the factories of contracts/IZVReader.h. No exception
// leaves them.

#include "contracts/IZVReader.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "siblings/reader/CLocalReader.h"
#include "siblings/reader/CMemoryReader.h"
#include "siblings/reader/CResourceName.h"
#include "siblings/reader/internet/CInternetReader.h"
#include "system/filename/ZVFilename.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <dlfcn.h>
#include <new>

#define ZV_EXPORT extern "C" __attribute__((visibility("default")))

namespace
{
void* s_toolsLibrary = nullptr;

template <class Reader, class... Arguments>
IZVReader* Make(const Arguments&... arguments)
{
    try
    {
        return new Reader(arguments...);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

// A reader for a name whose kind is one of those that the factory makes.
IZVReader* MakeByName(const char* factory, const wchar_t* text, bool makesLocal, bool makesInternet)
{
    try
    {
        const ZVString name = ZVFilename(text).GetFilename();
        const CResourceName::Kind kind = CResourceName::GetKind(name);
        if (kind == CResourceName::Kind::Local && makesLocal)
            return Make<CLocalReader>(name);
        if (kind == CResourceName::Kind::HTTP && makesInternet)
            return Make<CInternetReader>(name);
        ZVLog(ZVLogCategory::General, ZVString::FromUTF8(factory), "There is no reader for '%s'", name.GetBefore(L"?#", true));
    }
    catch (const std::bad_alloc&)
    {
    }
    return nullptr;
}
}

// Binds the tools library that the process has loaded, for this library's log lines; without one nothing is logged. The flag
// means nothing here.
ZV_EXPORT void ZVReaderInitialize(int32_t)
{
    if (s_toolsLibrary == nullptr)
        s_toolsLibrary = dlopen("libZVTools.so", RTLD_LAZY | RTLD_NOLOAD);
    if (s_toolsLibrary == nullptr)
        return;
    if (auto* const getTools = reinterpret_cast<IZVTools* (*)(int32_t)>(dlsym(s_toolsLibrary, "GetZVToolsDLL")))
        g_pZVTools = getTools(IZVTools::InterfaceVersion);
}

// Gives the tools library back. All readers are released by then.
ZV_EXPORT void ZVReaderUninitialize()
{
    g_pZVTools = nullptr;
    if (s_toolsLibrary != nullptr)
        dlclose(s_toolsLibrary);
    s_toolsLibrary = nullptr;
}

// A path, or an address with "file", "http" or "https".
ZV_EXPORT IZVReader* CreateGenericReaderDLL(const wchar_t* name)
{
    return MakeByName("CreateGenericReaderDLL", name, true, true);
}

ZV_EXPORT IZVReader* CreateLocalReaderDLL(const wchar_t* name)
{
    return MakeByName("CreateLocalReaderDLL", name, true, false);
}

ZV_EXPORT IZVReader* CreateInternetReaderDLL(const wchar_t* name)
{
    return MakeByName("CreateInternetReaderDLL", name, false, true);
}

ZV_EXPORT IZVReader* CreateFromMemoryReaderDLL(const void* bytes, int64_t count)
{
    return count < 0 || (bytes == nullptr && count > 0) ? nullptr : Make<CMemoryReader>(bytes, count);
}
