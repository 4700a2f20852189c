#pragma once

#include "core/containers/ZVArray.h"
#include "core/string/ZVString.h"

// An array of strings.
class ZVStringArray : public ZVArray<ZVString, const ZVString&, false>
{
public:
    // Replaces the strings by the parts of a text between delimiters. Empty parts count, except after a delimiter at the end:
    // "a;;b;" becomes "a", "" and "b". A null text has no parts; without a delimiter the whole text is one part. The text may be
    // one of the strings. A delimiter of several characters is searched from left to right, without overlap.
    void SetSplit(const wchar_t* text, wchar_t delimiter);
    void SetSplit(const wchar_t* text, const wchar_t* delimiter);

    // The strings from an index on, joined by the separator; empty for an index out of range. A null separator counts as empty.
    ZVString GetJoined(const wchar_t* separator, int32_t from = 0) const;

    // The index of the first string equal to the text, or -1.
    int32_t FindText(const wchar_t* text, bool caseSensitive = true) const;
};
