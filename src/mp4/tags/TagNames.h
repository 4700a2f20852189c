#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The type of the atom that holds a tag of a name, whose case does not count; 0 for a name that has no atom of its own.
uint32_t FindTagType(const ZVString& name);
