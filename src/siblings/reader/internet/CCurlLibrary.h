#pragma once

#include "system/library/ZVFunctionTable.h"

#include <curl/curl.h>

// clang-format off
#define ZV_CURL_FUNCTIONS(function)    \
    function(curl_global_init)         \
    function(curl_easy_init)           \
    function(curl_easy_cleanup)        \
    function(curl_easy_reset)          \
    function(curl_easy_setopt)         \
    function(curl_easy_getinfo)        \
    function(curl_easy_pause)          \
    function(curl_easy_strerror)       \
    function(curl_slist_append)        \
    function(curl_slist_free_all)      \
    function(curl_multi_init)          \
    function(curl_multi_cleanup)       \
    function(curl_multi_add_handle)    \
    function(curl_multi_remove_handle) \
    function(curl_multi_perform)       \
    function(curl_multi_poll)          \
    function(curl_multi_info_read)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CCurlFunctions, ZV_CURL_FUNCTIONS);

// The functions of libcurl that are used here, bound at run time: most processes never open an address and should not pay for
// the library.
struct CCurlLibrary : CCurlFunctions
{
    // The library, which the first call opens and initialises, or null when it is not there. It is never closed. May be called
    // from any thread.
    static const CCurlLibrary* Get();

private:
    bool Load();
};
