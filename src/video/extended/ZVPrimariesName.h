#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// How the product calls colour primaries, by their number in ISO/IEC 23091-2: "BT.709", "BT.2020". Empty for those that say
// nothing. Other numbers have the codec libraries' name in upper case, or an empty one when it is null.
ZVString PrimariesName(int32_t primaries, const char* codecName);
