#pragma once

#include <cstdarg>

struct ZVLogSource;

// The log of the codec libraries, which they write from any of their threads: warnings and worse go to the product's log.
namespace ZVCodecLog
{
// The function that the libraries call for each message. context is null or begins with a pointer to an AVClass; of a message
// 2,047 bytes are kept.
__attribute__((format(printf, 3, 0))) void Write(void* context, int level, const char* format, va_list arguments);

// The same under a name of the caller's.
__attribute__((format(printf, 4, 0))) void WriteTo(const ZVLogSource& source, void* context, int level, const char* format,
                                                   va_list arguments);
}
