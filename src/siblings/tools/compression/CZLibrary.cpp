#include "siblings/tools/compression/CZLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"

namespace
{
constexpr char FileName[] = "libz.so.1";
}

const CZLibrary* CZLibrary::Get()
{
    static CZLibrary s_library;
    static const bool s_isLoaded = s_library.Load(FileName);
    return s_isLoaded ? &s_library : nullptr;
}

bool CZLibrary::Load(const char* fileName)
{
    ZVRunTimeLibrary library(fileName);
    return library.BindAll<CZFunctions>(*this);
}
