#pragma once

#include "system/library/ZVFunctionTable.h"

#include <memory>

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

// clang-format off
#define ZV_XLIB_FUNCTIONS(function) \
    function(XSetErrorHandler)      \
    function(XSetIOErrorHandler)    \
    function(XDefaultScreen)        \
    function(XDefaultRootWindow)    \
    function(XDisplayWidth)         \
    function(XDisplayHeight)

#define ZV_XRANDR_FUNCTIONS(function)        \
    function(XRRQueryExtension)              \
    function(XRRGetScreenResourcesCurrent)   \
    function(XRRGetOutputInfo)               \
    function(XRRGetCrtcInfo)                 \
    function(XRRFreeCrtcInfo)                \
    function(XRRFreeOutputInfo)              \
    function(XRRFreeScreenResources)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CXlibFunctions, ZV_XLIB_FUNCTIONS);
ZV_DEFINE_FUNCTION_TABLE(CXRandRFunctions, ZV_XRANDR_FUNCTIONS);

// The functions of libX11 and libXrandr that tell of screens, bound when the first monitor is asked for. The connection comes from
// the window-manager library.
struct CScreenLibraries : CXlibFunctions, CXRandRFunctions
{
    // The bound libraries, which are never closed; null when one is missing or lacks a function.
    static const CScreenLibraries* Get();

private:
    bool Load();
};

// Calls the function of libXrandr that frees an object.
template <auto Free>
struct CXRandRReleaser
{
    template <class Object>
    void operator()(Object* object) const
    {
        (CScreenLibraries::Get()->*Free)(object);
    }
};

// The owners of what libXrandr hands out.
using CScreenResourcesPointer = std::unique_ptr<XRRScreenResources, CXRandRReleaser<&CXRandRFunctions::XRRFreeScreenResources>>;
using COutputInfoPointer = std::unique_ptr<XRROutputInfo, CXRandRReleaser<&CXRandRFunctions::XRRFreeOutputInfo>>;
using CCrtcInfoPointer = std::unique_ptr<XRRCrtcInfo, CXRandRReleaser<&CXRandRFunctions::XRRFreeCrtcInfo>>;
