#pragma once

#include "core/string/ZVString.h"

#include <string_view>

// Bytes of a file as a text; they should be UTF-8. It ends at a NUL.
ZVString GetText(std::string_view bytes);
