#include "siblings/tools/settings/CSQLiteLibrary.h"

#include <dlfcn.h>

namespace
{
template <class Function>
bool Bind(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}
}

bool CSQLiteLibrary::Load(const char* fileName)
{
    if (m_isLoaded)
        return true;
    void* const library = dlopen(fileName, RTLD_NOW | RTLD_LOCAL);
    m_isLoaded = library != nullptr && Bind(library, "sqlite3_open_v2", Open) && Bind(library, "sqlite3_close", Close) &&
                 Bind(library, "sqlite3_busy_timeout", SetBusyTimeout) && Bind(library, "sqlite3_errmsg", GetErrorMessage) &&
                 Bind(library, "sqlite3_prepare_v2", Prepare) && Bind(library, "sqlite3_bind_text", BindText) &&
                 Bind(library, "sqlite3_step", Step) && Bind(library, "sqlite3_column_text", GetColumnText) &&
                 Bind(library, "sqlite3_finalize", Finalize);
    return m_isLoaded;
}
