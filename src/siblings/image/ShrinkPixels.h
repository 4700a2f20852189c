#pragma once

#include "siblings/image/CPixels.h"

// Making pictures smaller.
namespace ShrinkPixels
{
// The largest size with the same shape that fits into maximum, or size itself if it fits. A side of maximum that is 0 or less
// does not count; a side of the result has at least 1 pixel.
ZVImageSize FindFit(const ZVImageSize& size, const ZVImageSize& maximum);

// The same picture in a size that is nowhere larger: each pixel is the mean of the area that it stands for, in which a pixel
// counts by its alpha too. Throws std::bad_alloc.
CPixels ToSize(const CPixelView& source, const ZVImageSize& size);
}
