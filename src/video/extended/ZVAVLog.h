#pragma once

#include <cstdarg>

// The log of the codec libraries, which they write from any of their threads: warnings and worse go to the product's log. Has the signature of
// the libraries' callback; context is null or begins with a pointer to an AVClass.
void ZVAVLog(void* context, int level, const char* format, va_list arguments);
