#pragma once

#include <cstdint>

// Search and comparison of texts by the rules of the user's language. All texts are NUL-terminated and not null.
class IZVStringTools
{
public:
    // The mode of Find in which upper and lower case are the same.
    static constexpr int32_t FindFolded = 3;

    // The position of the first occurrence of needle in text, in characters, or -1.
    virtual int32_t Find(const wchar_t* text, const wchar_t* needle, int32_t mode) = 0;
    // Below 0, 0 or above 0 as a comes before, with or after b. flags selects the rules, option is their boolean; a length that is not -1
    // bounds the characters that are looked at.
    virtual int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t flags, bool option, int32_t length) = 0;
    // True when the whole text matches a pattern in which "*" stands for any run and "?" for any one character.
    virtual bool MatchesWildcards(const wchar_t* text, const wchar_t* pattern) = 0;
    // True when the text holds a wild card.
    virtual bool HasWildcards(const wchar_t* text) = 0;

protected:
    ~IZVStringTools() = default;
};
