#include "siblings/tools/compression/CZLibrary.h"

#include <dlfcn.h>

namespace
{
constexpr char FileName[] = "libz.so.1";

template <class Function>
bool Bind(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}
}

const CZLibrary* CZLibrary::Get()
{
    static CZLibrary s_library;
    static const bool s_isLoaded = s_library.Load(FileName);
    return s_isLoaded ? &s_library : nullptr;
}

bool CZLibrary::Load(const char* fileName)
{
    void* const library = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
    return library != nullptr && Bind(library, "inflateInit2_", InflateInit) && Bind(library, "inflate", Inflate) &&
           Bind(library, "inflateReset", InflateReset) && Bind(library, "inflateEnd", InflateEnd);
}
