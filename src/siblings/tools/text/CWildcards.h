#pragma once

// Patterns of file names: "*" stands for any characters or none, "?" for one character. Case does not count.
class CWildcards
{
public:
    // True if the whole text matches. Takes at most as many steps as the length of the text times the length of the longest run
    // without "*" in the pattern.
    static bool Match(const wchar_t* text, const wchar_t* pattern);
    // True if a text contains "*" or "?".
    static bool AreIn(const wchar_t* text);
};
