// The entry points of the library: those that bind it to its process, and the factories of contracts/IZVReader.h. No exception
// leaves them.

#include "contracts/IZVReader.h"
#include "siblings/reader/CLocalReader.h"
#include "siblings/reader/CMemoryReader.h"
#include "siblings/reader/CResourceName.h"
#include "siblings/reader/internet/CInternetReader.h"
#include "system/library/ZVToolsBinding.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <new>

#define ZV_EXPORT extern "C" __attribute__((visibility("default")))

namespace
{
// A factory by name, with the kinds of names that it makes a reader for.
struct Factory
{
    ZVLogSource Source;
    bool MakesLocal;
    bool MakesInternet;
};

constexpr Factory GenericFactory = {
    {ZVLogCategory::General, L"CreateGenericReaderDLL"},
    true, true
};
constexpr Factory LocalFactory = {
    {ZVLogCategory::General, L"CreateLocalReaderDLL"},
    true, false
};
constexpr Factory InternetFactory = {
    {ZVLogCategory::General, L"CreateInternetReaderDLL"},
    false, true
};

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

// The name is taken as it stands: parsing it would cut a path at a ";".
IZVReader* MakeByName(const Factory& factory, const wchar_t* text)
{
    try
    {
        const ZVString name = text;
        const CResourceName::Kind kind = CResourceName::GetKind(name);
        if (kind == CResourceName::Kind::Local && factory.MakesLocal)
            return Make<CLocalReader>(name);
        if (kind == CResourceName::Kind::HTTP && factory.MakesInternet)
            return Make<CInternetReader>(name);
        factory.Source.Log("There is no reader for '%s'", name.GetBefore(L"?#", true));
    }
    catch (const std::bad_alloc&)
    {
    }
    return nullptr;
}
}

// Binds the tools library that the process has loaded, for this library's log lines. Without it nothing is logged. The flag means
// nothing here.
ZV_EXPORT void ZVReaderInitialize(int32_t)
{
    ZVToolsBinding::Bind();
}

// Gives the tools library back. All readers are released by then.
ZV_EXPORT void ZVReaderUninitialize()
{
    ZVToolsBinding::Release();
}

// A path, or an address with "file", "http" or "https".
ZV_EXPORT IZVReader* CreateGenericReaderDLL(const wchar_t* name)
{
    return MakeByName(GenericFactory, name);
}

ZV_EXPORT IZVReader* CreateLocalReaderDLL(const wchar_t* name)
{
    return MakeByName(LocalFactory, name);
}

ZV_EXPORT IZVReader* CreateInternetReaderDLL(const wchar_t* name)
{
    return MakeByName(InternetFactory, name);
}

ZV_EXPORT IZVReader* CreateFromMemoryReaderDLL(const void* bytes, int64_t count)
{
    return count < 0 || (bytes == nullptr && count > 0) ? nullptr : Make<CMemoryReader>(bytes, count);
}
