#pragma once

#include "contracts/IZVWMFactory.h"
#include "core/geometry/ZVRect.h"

// The window-manager library, which the first call loads.
namespace ZVWindowManager
{
// The connection to the X server, see IZVWMFactory::GetDisplay. Null without the library too.
_XDisplay* GetDisplay();

// A rectangle of the server's pixels in the pixels that callers count in. Without the library it stays as it is.
ZVRect ConvertRect(const ZVRect& rect, int32_t mode);
}
