#include "system/library/ZVFunctionTable.h"

#include <cstring>
#include <dlfcn.h>

const char* ZVFunctionTable::Bind(void* handle, const char* names, void* pointers)
{
    char* place = static_cast<char*>(pointers);
    for (const char* name = names; *name != '\0'; name += strlen(name) + 1)
    {
        void* const function = handle == nullptr ? nullptr : dlsym(handle, name);
        if (function == nullptr)
            return name;
        memcpy(place, &function, sizeof function);
        place += sizeof function;
    }
    return nullptr;
}
