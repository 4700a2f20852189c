#include "siblings/reader/internet/CCurlLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <dlfcn.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::Network, L"CCurlLibrary::Load"};

constexpr char FileName[] = "libcurl.so.4";
}

const CCurlLibrary* CCurlLibrary::Get()
{
    static CCurlLibrary s_library;
    static const bool s_isLoaded = s_library.Load();
    return s_isLoaded ? &s_library : nullptr;
}

bool CCurlLibrary::Load()
{
    ZVRunTimeLibrary library(FileName);
    if (!library.IsOpen())
    {
        Source.Log("No address can be opened: %s", dlerror());
        return false;
    }
    const bool isBound = library.BindAll<CCurlFunctions>(*this) && curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (!isBound)
        Source.Log("No address can be opened: %s is too old or cannot start", FileName);
    return isBound;
}
