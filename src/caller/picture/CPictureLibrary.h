#pragma once

#include <gd.h>

// The functions of libgd that are used.
#define ZV_PICTURE_FUNCTIONS(F)                                                                                                  \
    F(gdImageCreateFromFile) F(gdImageDestroy) F(gdImageScale) F(gdImageJpegPtr) F(gdImagePngPtrEx) F(gdImageWebpPtrEx) F(gdFree)

// libgd, which the process opens when it is first asked for and keeps.
struct CPictureLibrary
{
#define ZV_MEMBER(name) decltype(&::name) name = nullptr;
    ZV_PICTURE_FUNCTIONS(ZV_MEMBER)
#undef ZV_MEMBER

    // Throws std::runtime_error if it is not there.
    static const CPictureLibrary& Get();
};
