#pragma once

#include <cstdint>
#include <cwchar>
#include <new>

// Small questions about raw wide texts, with null as an empty text.
namespace ZVWideText
{
inline const wchar_t* OrEmpty(const wchar_t* text)
{
    return text == nullptr ? L"" : text;
}

// Characters before the NUL. A text too long for a string's length throws std::bad_alloc.
inline int32_t LengthOf(const wchar_t* text)
{
    const size_t length = text == nullptr ? 0 : wcslen(text);
    if (length >= INT32_MAX)
        throw std::bad_alloc();
    return static_cast<int32_t>(length);
}

// True when the character is in the set; the NUL is in none.
inline bool IsInSet(const wchar_t* set, wchar_t character)
{
    return set != nullptr && character != L'\0' && wcschr(set, character) != nullptr;
}
}
