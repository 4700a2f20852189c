#pragma once

#include "contracts/IZVFileTypes.h"
#include "core/string/ZVString.h"

#include <cstdint>

// The registry of file types of the tools library.
namespace ZVFileTypes
{
// Null without the library.
IZVFileTypes* Find();
// Whether files of a type, given by the extension without the dot, belong to a class of the registry. Without it none does.
bool IsInClass(const ZVString& fileType, int32_t fileClass);
}
