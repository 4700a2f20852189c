#pragma once

#include "siblings/image/formats/CImageFormat.h"

// WebP, by libwebp. What is written has a quality of 85, and alpha only if a pixel is not opaque. Animations are not read.
namespace WebPFormat
{
bool IsStart(const ZVByteSpan& bytes);
bool Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);
bool Encode(const CPixelView& picture, CByteSink& sink, std::string& message);
}
