#include "siblings/tools/CToolsLibrary.h"

// The one entry point of the library: the tools object, or null for a caller that was built for another version of its
// interface. The first call comes from the main thread.
extern "C" __attribute__((visibility("default"))) IZVTools* GetZVToolsDLL(int32_t version)
{
    return version == IZVTools::InterfaceVersion ? &CToolsLibrary::Get() : nullptr;
}
