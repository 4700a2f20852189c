#pragma once

#include "siblings/image/formats/CImageFormat.h"

// BMP. What is written is not compressed, and has alpha only if a pixel is not opaque.
namespace BMPFormat
{
bool IsStart(const ZVByteSpan& bytes);
bool Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);
bool Encode(const CPixelView& picture, CByteSink& sink, std::string& message);
}
