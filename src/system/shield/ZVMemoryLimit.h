#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// How much memory of its own a process may take.
namespace ZVMemoryLimit
{
// More than any film needs that is decoded in reasonable time.
inline constexpr int64_t Default = int64_t {4} << 30;

// Reads a number of bytes with a suffix for the power of 1024 or none: "4G", "512m", "4294967296". 0 for every other text.
int64_t Parse(const ZVString& text);

// Sets the limit, which counts private memory that can be written: neither the files that are mapped, nor the addresses that
// threads only keep free. A tighter limit of the caller's stays. False with the reason in errno.
bool Set(int64_t bytes);
}
