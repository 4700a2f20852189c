#pragma once

#include "video/codec/CZVAVLibraries.h"

#include <cstdint>

// How the container wants the frames of a stream shown: mirrored from left to right or not, and then turned clockwise by 0, 90, 180
// or 270 degrees. Other angles become the nearest of these.
struct CDisplayMatrix
{
    // Of the stream's display matrix, the transformation of ISO/IEC 14496-12, 6.2.2, if it has one. The libraries are loaded.
    CDisplayMatrix(const CZVAVLibraries& codec, const AVStream& stream);

    int32_t Rotation = 0;
    bool IsMirrored = false;
};
