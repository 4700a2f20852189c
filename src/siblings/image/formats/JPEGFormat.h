#pragma once

#include "siblings/image/formats/CImageFormat.h"

// JPEG, by libjpeg. What is written has a quality of 90; alpha is lost.
namespace JPEGFormat
{
bool IsStart(const ZVByteSpan& bytes);
bool Decode(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);
bool Encode(const CPixelView& picture, CByteSink& sink, std::string& message);
}
