#pragma once

#include "core/containers/ZVArray.h"
#include "core/string/ZVString.h"

// The array of strings.
class ZVStringArray : public ZVArray<ZVString, const ZVString&, false>
{
public:
    // Replaces the strings by the parts of a text between delimiters. Empty parts stay, except that nothing stands behind a
    // delimiter at the end: "a;;b;" gives "a", "" and "b". A null text gives no part; without a delimiter the text is one part.
    // The text may be one of the strings. The delimiter text is compared as it stands, from left to right without overlap.
    void SetSplit(const wchar_t* text, wchar_t delimiter);
    void SetSplit(const wchar_t* text, const wchar_t* delimiter);

    // The strings from an index on, with the separator between them; empty for an index out of range. A null separator is none.
    ZVString GetJoined(const wchar_t* separator, int32_t from = 0) const;

    // The index of the first string equal to the text, or -1.
    int32_t FindText(const wchar_t* text, bool caseSensitive = true) const;
};
