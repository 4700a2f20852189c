#pragma once

#include "core/geometry/ZVRect.h"
#include "video/codec/ZVCodecHeaders.h"

#include <cstdint>

// One of the rectangles that were found to hold the picture.
struct sRectTracker
{
    ZVRect Rect;
    int32_t Hits = 0;                   // how many frames it was found in
    int64_t FirstPts = AV_NOPTS_VALUE;  // the time stamp of the first of them, in the time base of the stream
};
