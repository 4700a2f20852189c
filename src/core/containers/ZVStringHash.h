#pragma once

#include "core/string/ZVCharacter.h"
#include "core/string/ZVStringGlobals.h"

#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <type_traits>

// The hashes and the equality of string keys. Texts are NUL-terminated; null counts as the empty string. Where case does not
// matter, each character is lowered as ZVCharacter::ToLower does it. Nothing allocates.
namespace ZVStringHash
{
// Lowers characters, for loops: the manager is looked up only once.
class Lowering
{
public:
    wchar_t operator()(wchar_t character) const
    {
        return ZVCharacter::IsInTable(character) ? m_globals.LowerFromTable(character)
                                                 : static_cast<wchar_t>(towlower(static_cast<wint_t>(character)));
    }

private:
    const ZVStringGlobals& m_globals = ZVStringGlobals::Get();
};

// Leaves characters as they are.
struct Identity
{
    wchar_t operator()(wchar_t character) const { return character; }
};

template <bool CaseSensitive>
using Folding = std::conditional_t<CaseSensitive, Identity, Lowering>;

// Horner's rule over the characters, which count as signed numbers. One step takes two characters, because each step has to wait
// for the multiplication of the one before.
template <bool CaseSensitive, class Result, Result Factor>
Result Polynomial(const wchar_t* text)
{
    Result hash = 0;
    if (text == nullptr)
        return hash;
    const Folding<CaseSensitive> fold;
    for (; *text != L'\0'; text += 2)
    {
        const Result first = static_cast<Result>(static_cast<int32_t>(fold(text[0])));
        if (text[1] == L'\0')
            return hash * Factor + first;
        hash = hash * (Factor * Factor) + (first * Factor + static_cast<Result>(static_cast<int32_t>(fold(text[1]))));
    }
    return hash;
}

// The hash of a map's key. It decides the order of entries in result files.
template <bool CaseSensitive>
uint32_t Hash32(const wchar_t* text)
{
    return Polynomial<CaseSensitive, uint32_t, 0x1003f>(text);
}

// The hash that stands for a text in sets that keep only hashes.
template <bool CaseSensitive>
uint64_t Hash64(const wchar_t* text)
{
    return Polynomial<CaseSensitive, uint64_t, 65599>(text);
}

template <bool CaseSensitive>
bool Equal(const wchar_t* left, const wchar_t* right)
{
    if (left == nullptr)
        left = L"";
    if (right == nullptr)
        right = L"";
    // Most keys are looked up with the same spelling, and the library compares faster than a loop.
    if (wcscmp(left, right) == 0)
        return true;
    if constexpr (CaseSensitive)
        return false;

    const Folding<CaseSensitive> fold;
    for (;; ++left, ++right)
    {
        if (*left != *right && fold(*left) != fold(*right))
            return false;
        if (*left == L'\0')
            return true;
    }
}
}
