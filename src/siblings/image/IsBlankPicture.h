#pragma once

#include "siblings/image/CPixels.h"

// True if there is nothing to see on a picture: one colour, a fade, fog, noise. Alpha does not count. Throws std::bad_alloc.
//
// The picture is seen as a grid of cells, and each cell as its mean colour. That takes the grain of a film and the noise of a
// recording away and leaves a title, which a histogram of the pixels would take for grain.
bool IsBlankPicture(const CPixelView& picture);
