#pragma once

#include "siblings/image/CPixels.h"

// Turns a picture clockwise by 1, 2 or 3 quarters. The result has pixels of its own. Throws std::bad_alloc.
CPixels RotatePixels(const CPixelView& source, int32_t quarterTurns);
