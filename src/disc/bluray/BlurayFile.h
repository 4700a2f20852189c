#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

class ZVBuffer;

// What the files of a disc have in common: they are read as a whole, and begin with the tag of their type.
namespace BlurayFile
{
// The largest file of a disc that is read. Real ones have some hundred kilobytes.
inline constexpr int64_t MaximumSize = int64_t {16} << 20;

// The tag at the start of a file, in bytes.
inline constexpr int64_t TypeSize = 8;

// Reads a file of a disc into memory. False, with a line in the log, when it cannot be read, is too large or is no regular file.
bool Load(const ZVString& path, ZVBuffer& bytes);

// Whether a text is one of a list, ignoring case.
template <size_t Count>
bool IsOneOf(const ZVString& text, const wchar_t* const (&list)[Count])
{
    for (const wchar_t* const item : list)
        if (text.IsEqual(item, false))
            return true;
    return false;
}
}
