#pragma once

#include "system/library/ZVFunctionTable.h"

#include <X11/Xlib.h>

// clang-format off
#define ZV_X11_FUNCTIONS(function) \
    function(XInitThreads)         \
    function(XSetIOErrorHandler)   \
    function(XOpenDisplay)         \
    function(XDisplayName)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CX11Functions, ZV_X11_FUNCTIONS);

// The functions of libX11 that a connection needs, bound when the first one is made.
namespace CX11Library
{
// The bound library, which is never closed; null when it is missing or lacks a function.
const CX11Functions* Get();
}
