#pragma once

#include <cstdint>

// Search and comparison of texts, which are NUL-terminated and not null. Where case does not count, each character is lowered by
// itself, with the string manager's tables up to 255 and with the system library above. May be called from any thread; nothing
// throws.
class IZVStringTools
{
public:
    // The mode of Find that ignores case. Every other mode compares the characters as they are.
    static constexpr int32_t FindFolded = 3;

    // With this flag of Compare texts are equal that differ only in case or in the leading zeros of numbers. Other bits are
    // ignored.
    static constexpr int32_t CompareWithoutTieBreaks = 1;

    // The position of the first occurrence of needle in text, in characters, or -1. An empty needle is found at 0. Takes time in
    // proportion to the length of both texts.
    virtual int32_t Find(const wchar_t* text, const wchar_t* needle, int32_t mode) = 0;
    // The natural order: below 0 if a comes before b, above 0 if it comes after b, and 0 if they are equal. Case does not count,
    // and a run of the digits 0 to 9 is a number: "Part 2" comes before "Part 10". Unless flags say otherwise, texts that are
    // equal in this order are ordered by leading zeros, fewer first, and then by code points, so 0 means that they are identical.
    // option reverses the order. A length that is not negative limits how many characters of each text are compared.
    virtual int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) = 0;
    // True if the whole text matches a pattern, in which "*" stands for any characters or none and "?" for one character. Case
    // does not count.
    virtual bool MatchesWildcards(const wchar_t* text, const wchar_t* pattern) = 0;
    // True if the text contains a wildcard, "*" or "?".
    virtual bool HasWildcards(const wchar_t* text) = 0;

protected:
    ~IZVStringTools() = default;
};
