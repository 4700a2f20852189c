#pragma once

#include <cstdint>
#include <cwchar>
#include <new>

// Helpers for raw wide texts. Null counts as an empty text.
namespace ZVWideText
{
inline const wchar_t* OrEmpty(const wchar_t* text)
{
    return text == nullptr ? L"" : text;
}

// The number of characters before the NUL. Throws std::bad_alloc for a text that is too long for a string.
inline int32_t LengthOf(const wchar_t* text)
{
    const size_t length = text == nullptr ? 0 : wcslen(text);
    if (length >= INT32_MAX)
        throw std::bad_alloc();
    return static_cast<int32_t>(length);
}

// True if the character is in the set; NUL is in no set.
inline bool IsInSet(const wchar_t* set, wchar_t character)
{
    return set != nullptr && character != L'\0' && wcschr(set, character) != nullptr;
}
}
