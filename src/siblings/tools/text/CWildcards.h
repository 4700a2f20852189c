#pragma once

// Patterns of file names: "*" stands for any run of characters, also none, "?" for any one character. Upper and lower case are
// the same.
class CWildcards
{
public:
    // True when the whole text matches. Takes no more steps than the text's length times that of the pattern's longest run
    // without a "*".
    static bool Match(const wchar_t* text, const wchar_t* pattern);
    // True when a text holds "*" or "?".
    static bool AreIn(const wchar_t* text);
};
