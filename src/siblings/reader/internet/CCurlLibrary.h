#pragma once

#include <curl/curl.h>

// The functions of libcurl that are used here, bound at run time: most processes never open an address and should not pay for
// the library.
struct CCurlLibrary
{
    // The library, which the first call opens and initialises, or null when it is not there. It is never closed. May be called
    // from any thread.
    static const CCurlLibrary* Get();

    decltype(&curl_global_init) Initialize = nullptr;
    decltype(&curl_easy_init) MakeHandle = nullptr;
    decltype(&curl_easy_cleanup) FreeHandle = nullptr;
    decltype(&curl_easy_reset) ResetHandle = nullptr;
    decltype(&curl_easy_setopt) SetOption = nullptr;
    decltype(&curl_easy_getinfo) GetInformation = nullptr;
    decltype(&curl_easy_pause) Pause = nullptr;
    decltype(&curl_easy_strerror) GetErrorText = nullptr;
    decltype(&curl_slist_append) AppendToList = nullptr;
    decltype(&curl_slist_free_all) FreeList = nullptr;
    decltype(&curl_multi_init) MakeMulti = nullptr;
    decltype(&curl_multi_cleanup) FreeMulti = nullptr;
    decltype(&curl_multi_add_handle) AddHandle = nullptr;
    decltype(&curl_multi_remove_handle) RemoveHandle = nullptr;
    decltype(&curl_multi_perform) Perform = nullptr;
    decltype(&curl_multi_poll) Poll = nullptr;
    decltype(&curl_multi_info_read) ReadMessage = nullptr;

private:
    bool Load();
};
