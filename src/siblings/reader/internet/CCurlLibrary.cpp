#include "siblings/reader/internet/CCurlLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <dlfcn.h>

namespace
{
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
        ZVLog(ZVLogCategory::Network, L"CCurlLibrary::Load", "No address can be opened: %s", dlerror());
        return false;
    }
    library.Bind("curl_global_init", Initialize);
    library.Bind("curl_easy_init", MakeHandle);
    library.Bind("curl_easy_cleanup", FreeHandle);
    library.Bind("curl_easy_reset", ResetHandle);
    library.Bind("curl_easy_setopt", SetOption);
    library.Bind("curl_easy_getinfo", GetInformation);
    library.Bind("curl_easy_pause", Pause);
    library.Bind("curl_easy_strerror", GetErrorText);
    library.Bind("curl_slist_append", AppendToList);
    library.Bind("curl_slist_free_all", FreeList);
    library.Bind("curl_multi_init", MakeMulti);
    library.Bind("curl_multi_cleanup", FreeMulti);
    library.Bind("curl_multi_add_handle", AddHandle);
    library.Bind("curl_multi_remove_handle", RemoveHandle);
    library.Bind("curl_multi_perform", Perform);
    library.Bind("curl_multi_poll", Poll);
    library.Bind("curl_multi_info_read", ReadMessage);
    const bool isBound = library.IsComplete() && Initialize(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (!isBound)
        ZVLog(ZVLogCategory::Network, L"CCurlLibrary::Load", "No address can be opened: %s is too old or cannot start", FileName);
    return isBound;
}
