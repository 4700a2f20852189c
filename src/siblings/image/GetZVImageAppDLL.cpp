#include "siblings/image/CImageLibrary.h"

// The only entry point of the library. Returns the image library, which lasts as long as the process.
extern "C" __attribute__((visibility("default"))) IZVImageLibrary* GetZVImageAppDLL()
{
    static CImageLibrary s_library;
    return &s_library;
}
