#include "siblings/reader/internet/CCurlLibrary.h"

#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <dlfcn.h>

namespace
{
constexpr char FileName[] = "libcurl.so.4";

template <class Function>
bool Bind(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}
}

const CCurlLibrary* CCurlLibrary::Get()
{
    static CCurlLibrary s_library;
    static const bool s_isLoaded = s_library.Load();
    return s_isLoaded ? &s_library : nullptr;
}

bool CCurlLibrary::Load()
{
    void* const library = dlopen(FileName, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
    {
        ZVLog(ZVLogCategory::Network, L"CCurlLibrary::Load", "No address can be opened: %s", dlerror());
        return false;
    }
    const bool isBound = Bind(library, "curl_global_init", Initialize) && Bind(library, "curl_easy_init", MakeHandle) &&
                         Bind(library, "curl_easy_cleanup", FreeHandle) && Bind(library, "curl_easy_reset", ResetHandle) &&
                         Bind(library, "curl_easy_setopt", SetOption) && Bind(library, "curl_easy_getinfo", GetInformation) &&
                         Bind(library, "curl_easy_pause", Pause) && Bind(library, "curl_easy_strerror", GetErrorText) &&
                         Bind(library, "curl_slist_append", AppendToList) && Bind(library, "curl_slist_free_all", FreeList) &&
                         Bind(library, "curl_multi_init", MakeMulti) && Bind(library, "curl_multi_cleanup", FreeMulti) &&
                         Bind(library, "curl_multi_add_handle", AddHandle) &&
                         Bind(library, "curl_multi_remove_handle", RemoveHandle) &&
                         Bind(library, "curl_multi_perform", Perform) && Bind(library, "curl_multi_poll", Poll) &&
                         Bind(library, "curl_multi_info_read", ReadMessage) && Initialize(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    if (!isBound)
        ZVLog(ZVLogCategory::Network, L"CCurlLibrary::Load", "No address can be opened: %s is too old or cannot start", FileName);
    return isBound;
}
