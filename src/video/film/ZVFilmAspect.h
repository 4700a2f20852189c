#pragma once

#include "core/property/ZVPropertyMap.h"
#include "video/codec/ZVCodecHeaders.h"

// How wide a film is shown, which depends on the shape of its pixels.
namespace ZVFilmAspect
{
// The property that tells it.
inline constexpr wchar_t Property[] = L"Aspect Ratio";

// The width of a pixel divided by its height: what the stream of the container says or what the film's last frame says, in an order
// that depends on the extension of the file, and 1 when neither says anything. Extensions are compared as they stand.
double GetPixelAspect(const AVStream& stream, const AVRational& frameAspect, const ZVString& extension);

// The width of the whole picture divided by its height, with pixels of that aspect; 0 for a stream without a size.
double GetDisplayAspect(const AVStream& stream, double pixelAspect);

// Sets the property, with at most two decimals and the decimal point of the locale, unless the aspect is 0.
void Write(ZVPropertyMap& properties, double aspect);
}
