#pragma once

#include <cstdint>

// Search and comparison of texts. All texts are NUL-terminated and not null. Where case does not count, each character is
// lowered by itself, by the string manager's tables up to 255 and by the system library above. May be called from any thread;
// no exception comes out.
class IZVStringTools
{
public:
    // The mode of Find in which upper and lower case are the same. Every other mode compares the characters as they are.
    static constexpr int32_t FindFolded = 3;

    // The flag of Compare with which texts that differ only in case, or in the leading zeros of numbers, are equal. Other bits
    // mean nothing.
    static constexpr int32_t CompareWithoutTieBreaks = 1;

    // The position of the first occurrence of needle in text, in characters, or -1. An empty needle is found at 0. Takes time
    // in proportion to the length of both texts.
    virtual int32_t Find(const wchar_t* text, const wchar_t* needle, int32_t mode) = 0;
    // The natural order: below 0, 0 or above 0 as a comes before, with or after b. Case does not count, and a run of the digits
    // 0 to 9 is a number: "Part 2" comes before "Part 10". Texts that this leaves equal are told apart by leading zeros, fewer
    // first, and then by their code points, unless flags say otherwise; then 0 means that the texts are the same. With option
    // the order is reversed. A length that is not negative bounds the characters that are looked at in each text.
    virtual int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) = 0;
    // True when the whole text matches a pattern in which "*" stands for any run and "?" for any one character. Case does not
    // count.
    virtual bool MatchesWildcards(const wchar_t* text, const wchar_t* pattern) = 0;
    // True when the text holds a wild card, "*" or "?".
    virtual bool HasWildcards(const wchar_t* text) = 0;

protected:
    ~IZVStringTools() = default;
};
