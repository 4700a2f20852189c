#pragma once

#include "system/library/ZVFunctionTable.h"

#include <curl/curl.h>
#include <memory>

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
    function(curl_multi_info_read)     \
    function(curl_url)                 \
    function(curl_url_cleanup)         \
    function(curl_url_set)             \
    function(curl_url_get)             \
    function(curl_free)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CCurlFunctions, ZV_CURL_FUNCTIONS);

// The functions of libcurl that are used here, bound at run time: most processes never open an address and should not pay for
// the library.
struct CCurlLibrary : CCurlFunctions
{
    // The library, which the first call opens and initialises and nobody closes; null when it is missing. May be called from any
    // thread.
    static const CCurlLibrary* Get();

private:
    bool Load();
};

// Calls the function of libcurl that frees an object.
template <auto Free>
struct CCurlReleaser
{
    template <class Object>
    void operator()(Object* object) const
    {
        (CCurlLibrary::Get()->*Free)(object);
    }
};

// The owners of what libcurl hands out.
using CCurlMultiPointer = std::unique_ptr<CURLM, CCurlReleaser<&CCurlFunctions::curl_multi_cleanup>>;
using CCurlEasyPointer = std::unique_ptr<CURL, CCurlReleaser<&CCurlFunctions::curl_easy_cleanup>>;
using CCurlListPointer = std::unique_ptr<curl_slist, CCurlReleaser<&CCurlFunctions::curl_slist_free_all>>;
using CCurlAddressPointer = std::unique_ptr<CURLU, CCurlReleaser<&CCurlFunctions::curl_url_cleanup>>;
using CCurlTextPointer = std::unique_ptr<char, CCurlReleaser<&CCurlFunctions::curl_free>>;
