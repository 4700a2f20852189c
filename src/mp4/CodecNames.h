#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The name of the codec with a number, for the user.
ZVString GetCodecName(int32_t number);
