#pragma once

#include "siblings/image/formats/CImageFormat.h"

// PNG, by libpng. What is written has alpha only if a pixel is not opaque.
namespace PNGFormat
{
bool IsStart(const ZVByteSpan& bytes);
bool Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);
bool Encode(const CPixelView& picture, CByteSink& sink, std::string& message);
}
