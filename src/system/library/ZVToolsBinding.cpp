#include "system/library/ZVToolsBinding.h"

#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVStringGlobals.h"

#include <dlfcn.h>
#include <memory>

namespace
{
struct LibraryCloser
{
    void operator()(void* handle) const { dlclose(handle); }
};

std::unique_ptr<void, LibraryCloser> s_toolsLibrary;
}

void ZVToolsBinding::Bind()
{
    // Made here, where no second thread is in the library yet: its own first use is not guarded.
    ZVStringGlobals::Get();
    if (s_toolsLibrary == nullptr)
        s_toolsLibrary.reset(dlopen("libZVTools.so", RTLD_LAZY | RTLD_NOLOAD));
    if (s_toolsLibrary == nullptr)
        return;
    if (auto* const getTools = reinterpret_cast<IZVTools* (*)(int32_t)>(dlsym(s_toolsLibrary.get(), "GetZVToolsDLL")))
        g_pZVTools = getTools(IZVTools::InterfaceVersion);
}

void ZVToolsBinding::Release()
{
    g_pZVTools = nullptr;
    s_toolsLibrary.reset();
}
