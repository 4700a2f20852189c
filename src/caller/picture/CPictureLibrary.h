#pragma once

#include <gd.h>

// The functions of libgd that are used.
// clang-format off
#define ZV_PICTURE_FUNCTIONS(F) \
    F(gdImageCreateFromJpegPtr) F(gdImageCreateFromPngPtr) F(gdImageCreateFromWebpPtr) F(gdImageCreateFromBmpPtr) \
    F(gdImageCreateFromGifPtr) \
    F(gdImageJpegPtr) F(gdImagePngPtrEx) F(gdImageWebpPtrEx) F(gdImageScale) F(gdImageDestroy) F(gdFree)
// clang-format on

// libgd, which the process opens when it is first asked for and keeps.
struct CPictureLibrary
{
#define ZV_MEMBER(name) decltype(&::name) name = nullptr;
    ZV_PICTURE_FUNCTIONS(ZV_MEMBER)
#undef ZV_MEMBER

    // Throws std::runtime_error if it is not there.
    static const CPictureLibrary& Get();
};
