#pragma once

#include <cstdarg>

// The log of the codec libraries while the player reads a film.
namespace CPlayerCodecLog
{
// The function that the libraries call for each message, from any of their threads.
__attribute__((format(printf, 3, 0))) void Write(void* context, int level, const char* format, va_list arguments);
}
