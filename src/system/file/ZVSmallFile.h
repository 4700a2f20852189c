#pragma once

#include "core/string/ZVString.h"

#include <string>
#include <string_view>

// Small files of the system and of the user's desktop, as bytes: the paths in them have to be decoded before they are text.
namespace ZVSmallFile
{
// The content, of which everything after the first mebibyte may be missing. Empty if the file does not exist or cannot be read.
std::string Read(const ZVString& path);

// Takes the text before the first delimiter, together with the delimiter, off the start of another text; all of it if there is no
// delimiter.
std::string_view TakeUpTo(std::string_view& text, char delimiter);
}
