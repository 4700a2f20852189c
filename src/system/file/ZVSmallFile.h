#pragma once

#include "core/string/ZVString.h"

#include <string>
#include <string_view>

// Small files of the system and of the user's desktop as bytes, since what stands in them about paths has to be decoded first.
namespace ZVSmallFile
{
// The content, or as much as there is of it in the first mebibyte. Empty without the file, or where it cannot be read.
std::string Read(const ZVString& path);

// Takes the text in front of the first delimiter, and the delimiter, from the start of another text; all of it when there is
// none.
std::string_view TakeUpTo(std::string_view& text, char delimiter);
}
