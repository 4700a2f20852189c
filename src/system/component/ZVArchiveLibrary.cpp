#include "system/component/ZVArchiveLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"
#include "system/log/ZVLog.h"

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"ZVArchiveLibrary"};

constexpr char FileName[] = "libarchive.so.13";
}

const ZVArchiveLibrary* ZVArchiveLibrary::Get()
{
    static ZVArchiveLibrary s_library;
    static const bool s_isLoaded = s_library.Load();
    return s_isLoaded ? &s_library : nullptr;
}

bool ZVArchiveLibrary::Load()
{
    const bool isBound = ZVRunTimeLibrary(FileName).BindAll<ZVArchiveFunctions>(*this);
    if (!isBound)
        Source.Log("%s cannot be used, so no archive can be unpacked", FileName);
    return isBound;
}
