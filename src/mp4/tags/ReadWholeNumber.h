#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// The number that a text is, from 0 to a maximum, with or without white space around it. Throws a message that says what was
// expected if the text is anything else.
uint32_t ReadWholeNumber(const ZVString& text, uint32_t maximum);
