#include "caller/picture/CPictureLibrary.h"

#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace
{
constexpr char FileName[] = "libgd.so.3";

template <class Function>
void Bind(Function& function, void* library, const char* name)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr)
        throw std::runtime_error(std::string(FileName) + " lacks the function " + name);
}

CPictureLibrary Open()
{
    void* const library = dlopen(FileName, RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr)
        throw std::runtime_error(std::string("pictures cannot be made smaller without the package libgd3: ") + dlerror());
    CPictureLibrary functions;
#define ZV_BIND(name) Bind(functions.name, library, #name);
    ZV_PICTURE_FUNCTIONS(ZV_BIND)
#undef ZV_BIND
    return functions;
}
}

const CPictureLibrary& CPictureLibrary::Get()
{
    static const CPictureLibrary Library = Open();
    return Library;
}
