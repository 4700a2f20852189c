#include "devices/monitor/CScreenLibraries.h"

#include "system/library/ZVRunTimeLibrary.h"

namespace
{
constexpr char XlibFileName[] = "libX11.so.6";
constexpr char XRandRFileName[] = "libXrandr.so.2";
}

const CScreenLibraries* CScreenLibraries::Get()
{
    static CScreenLibraries s_libraries;
    static const bool s_areLoaded = s_libraries.Load();
    return s_areLoaded ? &s_libraries : nullptr;
}

bool CScreenLibraries::Load()
{
    return ZVRunTimeLibrary(XlibFileName).BindAll<CXlibFunctions>(*this) &&
           ZVRunTimeLibrary(XRandRFileName).BindAll<CXRandRFunctions>(*this);
}
