#include "siblings/wmfactory/CWMFactory.h"

// The only entry point of the library. Returns its interface, which lasts as long as the process.
extern "C" __attribute__((visibility("default"))) IZVSiblingInterface* CreateZVWMFactory()
{
    static constinit CWMFactory s_factory;
    return &s_factory;
}
