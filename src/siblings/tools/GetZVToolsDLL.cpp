#include "siblings/tools/CToolsLibrary.h"

// The only entry point of the library. Returns the tools object, or null for a caller that was built for another version of the
// interface. The first call must come from the main thread.
extern "C" __attribute__((visibility("default"))) IZVTools* GetZVToolsDLL(int32_t version)
{
    return version == IZVTools::InterfaceVersion ? &CToolsLibrary::Get() : nullptr;
}
