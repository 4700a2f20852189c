#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

class ZVBuffer;

// Inflates what a server sent with the content encoding "gzip", with the decoder of the tools library. Both functions return false
// and leave the content as it was when it is damaged, when nothing comes out, when more comes out than allowed, and without the
// library.
namespace ZVGzipContent
{
// What may come out when the caller has no lower limit: a few kilobytes can claim to hold a disk full of zeros.
inline constexpr int64_t MaximumInflatedBytes = int64_t {1} << 30;

struct Limit
{
    int64_t Bytes = MaximumInflatedBytes;
    // Otherwise the output is cut there, and an input of that many bytes may have been cut there too.
    bool FailIfLarger = true;
};

// Replaces the used bytes of a buffer.
bool InflateBuffer(ZVBuffer& buffer, const Limit& limit);
// Replaces a file, as CFileReplacement does.
bool InflateFile(const ZVString& path, const Limit& limit);
}
