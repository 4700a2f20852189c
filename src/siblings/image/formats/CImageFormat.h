#pragma once

#include "core/bytes/ZVByteSpan.h"
#include "siblings/image/CPixels.h"
#include "siblings/image/formats/CByteSink.h"

#include <string>

// What a picture may be at most.
struct CImageLimits
{
    static constexpr int64_t DefaultPixels = 100'000'000;

    // True if a picture of that size may be decoded. If not, the message says why. Asked before there is memory for the pixels.
    bool Allow(int64_t width, int64_t height, std::string& message) const;

    // What the picture has to fit into. A decoder may give a larger one, if that is not cheaper.
    ZVImageSize FittingSize {};
    int64_t Pixels = DefaultPixels;
};

// A format of picture files. The functions are false with the reason in message. A picture that was read although something is
// wrong with its file has a message too. They throw std::bad_alloc.
struct CImageFormat
{
    // The format that the content of a file or the extension of its name, in any case, stands for; null for another.
    static const CImageFormat* FindByContent(const ZVByteSpan& bytes);
    static const CImageFormat* FindByExtension(const wchar_t* extension);

    bool (*IsStart)(const ZVByteSpan& bytes);
    bool (*Decode)(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);
    bool (*Encode)(const CPixelView& picture, CByteSink& sink, std::string& message);
};

// Reads a picture of any format, in a size that fits.
bool DecodeImage(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message);
