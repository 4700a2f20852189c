#include "siblings/image/formats/CImageFormat.h"

#include "core/string/ZVString.h"
#include "siblings/image/ShrinkPixels.h"
#include "siblings/image/formats/BMPFormat.h"
#include "siblings/image/formats/JPEGFormat.h"
#include "siblings/image/formats/PNGFormat.h"
#include "siblings/image/formats/WebPFormat.h"

namespace
{
struct FormatRow
{
    const wchar_t* Extension;
    CImageFormat Format;
};

constexpr FormatRow Formats[] = {
    {L"png",  {PNGFormat::IsStart, PNGFormat::Decode, PNGFormat::Encode}   },
    {L"jpg",  {JPEGFormat::IsStart, JPEGFormat::Decode, JPEGFormat::Encode}},
    {L"jpeg", {JPEGFormat::IsStart, JPEGFormat::Decode, JPEGFormat::Encode}},
    {L"webp", {WebPFormat::IsStart, WebPFormat::Decode, WebPFormat::Encode}},
    {L"bmp",  {BMPFormat::IsStart, BMPFormat::Decode, BMPFormat::Encode}   },
};
}

bool CImageLimits::Allow(int64_t width, int64_t height, std::string& message) const
{
    // Divided, since the sides are numbers of a file.
    if (width > 0 && height > 0 && width <= Pixels / height)
        return true;
    message = "it has " + std::to_string(width) + " by " + std::to_string(height) + " pixels";
    return false;
}

const CImageFormat* CImageFormat::FindByContent(const ZVByteSpan& bytes)
{
    for (const FormatRow& row : Formats)
        if (row.Format.IsStart(bytes))
            return &row.Format;
    return nullptr;
}

const CImageFormat* CImageFormat::FindByExtension(const wchar_t* extension)
{
    const ZVString text = extension;
    for (const FormatRow& row : Formats)
        if (text.IsEqual(row.Extension, false))
            return &row.Format;
    return nullptr;
}

bool DecodeImage(const ZVByteSpan& bytes, const CImageLimits& limits, CPixels& pixels, std::string& message)
{
    const CImageFormat* const format = CImageFormat::FindByContent(bytes);
    if (format == nullptr)
    {
        message = "it is no PNG, JPEG, WebP or BMP file";
        return false;
    }
    if (!format->Decode(bytes, limits, pixels, message))
        return false;
    const CPixelView view = pixels.View();
    const ZVImageSize fit = ShrinkPixels::FindFit({view.Width, view.Height}, limits.FittingSize);
    if (fit.Width != view.Width || fit.Height != view.Height)
        pixels = ShrinkPixels::ToSize(view, fit);
    return true;
}
