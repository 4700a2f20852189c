#pragma once

#include "siblings/image/CPixels.h"

// Pictures in files. Both functions are false with the reason in the log, and throw std::bad_alloc.
namespace CImageFile
{
// Writes a picture in the format of the path's extension. The file is whole or as it was before.
bool Save(const CPixelView& picture, const wchar_t* path);

// Reads a picture in the format of the content, made smaller where it does not fit into a size. Damage that leaves most of a
// picture is logged, and the picture is read all the same. Anything but a plain file is refused without waiting for it.
bool Load(const wchar_t* path, const ZVImageSize& maximumSize, CPixels& pixels);
}
