#pragma once

#include <cstddef>
#include <cstdint>

// A place in a NUL-terminated text. What is not there is not skipped.
class CDateCursor
{
public:
    explicit CDateCursor(const wchar_t* text) : m_text(text) {}

    bool IsAtEnd() const { return *m_text == L'\0'; }
    wchar_t Peek() const { return *m_text; }
    bool IsAtDigit() const;
    // True when there were blanks.
    bool SkipBlanks();
    // Skips one character, of either case when it is a letter of ASCII.
    bool Skip(wchar_t character);
    // Reads as many digits as there are, up to most. False, with nothing skipped, when there are less than least.
    bool ReadNumber(int32_t least, int32_t most, int32_t& number);
    // Reads the decimals behind a decimal sign as a fraction of 1; 0.0 when there are none.
    double ReadDecimals();
    // Reads all letters that stand here as the name, or the beginning of the name of at least three letters, of one of a list.
    template <size_t Count>
    bool ReadName(const wchar_t* const (&names)[Count], int32_t& index)
    {
        return ReadName(names, static_cast<int32_t>(Count), index);
    }
    // Skips a text of letters that no further letter follows.
    bool SkipWord(const wchar_t* word);

private:
    bool ReadName(const wchar_t* const* names, int32_t count, int32_t& index);

    const wchar_t* m_text;
};
