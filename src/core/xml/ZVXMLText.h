#pragma once

#include "core/string/ZVCharacter.h"

#include <cstdint>
#include <cwchar>

// The meaning of the characters of an XML text, for the token reader and for code that looks into a tag.
namespace ZVXMLText
{
inline constexpr wchar_t Blanks[] = L" \t\n\r";

inline bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t' || character == L'\n' || character == L'\r';
}

// True for a character that ends the name of an element.
inline bool IsNameEnd(wchar_t character)
{
    return character <= L'>' && (IsBlank(character) || character == L'/' || character == L'>');
}

// True for a character that begins the name of an element. More characters are accepted than by the standard, which does no harm.
inline bool IsNameStart(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || character == L'_' || character == L':' || character > 96;
}

inline const wchar_t* SkipName(const wchar_t* text, const wchar_t* end)
{
    while (text != end && !IsNameEnd(*text))
        ++text;
    return text;
}

inline const wchar_t* SkipBlanks(const wchar_t* text, const wchar_t* end)
{
    while (text != end && IsBlank(*text))
        ++text;
    return text;
}

// The first occurrence of a character, or end.
inline const wchar_t* FindCharacter(const wchar_t* text, const wchar_t* end, wchar_t character)
{
    const wchar_t* found = wmemchr(text, character, static_cast<size_t>(end - text));
    return found != nullptr ? found : end;
}

// How names are compared.
enum class Case : int32_t
{
    Exact,
    Folded,
};

inline bool AreEqual(const wchar_t* left, const wchar_t* right, int32_t length, Case names)
{
    for (int32_t index = 0; index < length; ++index)
        if (left[index] != right[index] &&
            (names == Case::Exact || ZVCharacter::ToLower(left[index]) != ZVCharacter::ToLower(right[index])))
            return false;
    return true;
}
}
