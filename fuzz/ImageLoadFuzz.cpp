// Picture files of all formats.

#include "Require.h"
#include "siblings/image/formats/CImageFormat.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // The largest picture that is read takes a second, and many inputs would ask for it.
    constexpr int64_t maximumPixels = 1 << 18;
    for (const ZVImageSize& fitting : {
             ZVImageSize {  },
              ZVImageSize { 23, 40}
    })
    {
        CPixels pixels;
        std::string message;
        const CImageLimits limits {.FittingSize = fitting, .Pixels = maximumPixels};
        if (!DecodeImage(ZVByteSpan(data, static_cast<int64_t>(size)), limits, pixels, message))
        {
            Require(!message.empty());
            continue;
        }
        const CPixelView view = pixels.View();
        Require(view.Width > 0);
        Require(view.Height > 0);
        Require(fitting.Width == 0 || view.Width <= fitting.Width);
        Require(fitting.Height == 0 || view.Height <= fitting.Height);
        // Every pixel has a value.
        Require(view.IsOpaque() || !view.IsOpaque());
    }
    return 0;
}
