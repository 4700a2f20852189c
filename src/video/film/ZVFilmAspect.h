#pragma once

#include "core/string/ZVString.h"
#include "video/codec/ZVCodecHeaders.h"

// How wide a film is shown, which hangs on the shape of its pixels.
namespace ZVFilmAspect
{
// The width of a pixel divided by its height: what the stream of the container says or what the film's last frame says, in an order
// that hangs on the extension of the file, and 1 when neither says anything. Extensions are compared as they stand.
double GetPixelAspect(const AVStream& stream, const AVRational& frameAspect, const ZVString& extension);

// The width of the whole picture divided by its height, with pixels of that aspect; 0 for a stream without a size.
double GetDisplayAspect(const AVStream& stream, double pixelAspect);
}
