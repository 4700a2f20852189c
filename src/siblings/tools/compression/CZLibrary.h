#pragma once

#include "system/library/ZVFunctionTable.h"

#include <zlib.h>

// clang-format off
#define ZV_ZLIB_FUNCTIONS(function) \
    function(inflateInit2_)         \
    function(inflate)               \
    function(inflateReset)          \
    function(inflateEnd)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CZFunctions, ZV_ZLIB_FUNCTIONS);

// The functions of zlib that a decoder needs, bound when the first one is made: most processes inflate nothing and should not pay
// for the library.
struct CZLibrary : CZFunctions
{
    // The bound library, which is never closed; null when it is missing or lacks a function.
    static const CZLibrary* Get();

private:
    bool Load(const char* fileName);
};
