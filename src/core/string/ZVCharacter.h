#pragma once

#include "core/string/ZVStringGlobals.h"

#include <cwctype>

// Case and classes of single characters: from the string manager's tables up to code 255, from the system library above.
namespace ZVCharacter
{
inline bool IsInTable(wchar_t character)
{
    return character >= 0 && character < ZVStringGlobals::TableSize;
}

inline wchar_t ToLower(wchar_t character)
{
    return IsInTable(character) ? ZVStringGlobals::Get().LowerFromTable(character)
                                : static_cast<wchar_t>(towlower(static_cast<wint_t>(character)));
}

inline bool HasClass(wchar_t character, uint8_t classBit, int (*test)(wint_t))
{
    return IsInTable(character) ? (ZVStringGlobals::Get().ClassFromTable(character) & classBit) != 0
                                : test(static_cast<wint_t>(character)) != 0;
}

inline bool IsDigit(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Digit, iswdigit);
}
inline bool IsAlphabetic(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Alphabetic, iswalpha);
}
inline bool IsSpace(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Space, iswspace);
}
inline bool IsUpper(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Upper, iswupper);
}
inline bool IsLower(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Lower, iswlower);
}
inline bool IsPunctuation(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Punctuation, iswpunct);
}
inline bool IsPrintable(wchar_t character)
{
    return HasClass(character, ZVStringGlobals::Printable, iswprint);
}
}
