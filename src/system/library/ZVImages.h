#pragma once

#include "contracts/IZVImage.h"
#include "contracts/ZVReleasePointer.h"

// Owns a picture of the image library.
using ZVImagePointer = ZVReleasePointer<IZVImage>;

// The image library, which the first call loads.
namespace ZVImages
{
// Makes a picture without pixels. Null without the library.
ZVImagePointer Create();
}
