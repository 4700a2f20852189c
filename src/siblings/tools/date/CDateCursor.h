#pragma once

#include <cstddef>
#include <cstdint>

// A position in a NUL-terminated text. A function that does not find what it looks for does not move it.
class CDateCursor
{
public:
    explicit CDateCursor(const wchar_t* text) : m_text(text) {}

    bool IsAtEnd() const { return *m_text == L'\0'; }
    wchar_t Peek() const { return *m_text; }
    bool IsAtDigit() const;
    // True if there were blanks.
    bool SkipBlanks();
    // Skips one character. ASCII letters are compared ignoring case.
    bool Skip(wchar_t character);
    // Reads as many digits as there are, up to most. False if there are fewer than least.
    bool ReadNumber(int32_t least, int32_t most, int32_t& number);
    // Reads a decimal sign and the digits after it as a fraction of 1; 0.0 if there are none.
    double ReadDecimals();
    // Reads all letters at this position, which must be one of the names or the first three or more letters of one.
    template <size_t Count>
    bool ReadName(const wchar_t* const (&names)[Count], int32_t& index)
    {
        return ReadName(names, static_cast<int32_t>(Count), index);
    }
    // Skips a word of letters, which must not be followed by another letter.
    bool SkipWord(const wchar_t* word);

private:
    bool ReadName(const wchar_t* const* names, int32_t count, int32_t& index);

    const wchar_t* m_text;
};
