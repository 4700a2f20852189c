#include "siblings/tools/date/CDateCursor.h"

#include "core/string/ZVDigits.h"

#include <cwchar>

namespace
{
constexpr size_t LeastNameLength = 3;

// A date cannot hold more decimals than this.
constexpr int32_t MaximumDecimals = 9;

wchar_t ToLowerASCII(wchar_t character)
{
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character - L'A' + L'a') : character;
}

bool IsLetter(wchar_t character)
{
    const wchar_t lowered = ToLowerASCII(character);
    return lowered >= L'a' && lowered <= L'z';
}

size_t CountLetters(const wchar_t* text)
{
    size_t length = 0;
    while (IsLetter(text[length]))
        ++length;
    return length;
}

bool IsStartOf(const wchar_t* text, size_t length, const wchar_t* name)
{
    for (size_t index = 0; index < length; ++index)
        if (ToLowerASCII(text[index]) != ToLowerASCII(name[index]))
            return false;
    return true;
}
}

bool CDateCursor::IsAtDigit() const
{
    return ZVDigits::DecimalValue(*m_text) != ZVDigits::NotADigit;
}

bool CDateCursor::SkipBlanks()
{
    const wchar_t* const start = m_text;
    while (*m_text == L' ' || *m_text == L'\t' || *m_text == L'\n' || *m_text == L'\r')
        ++m_text;
    return m_text != start;
}

bool CDateCursor::Skip(wchar_t character)
{
    if (*m_text == L'\0' || ToLowerASCII(*m_text) != ToLowerASCII(character))
        return false;
    ++m_text;
    return true;
}

bool CDateCursor::ReadNumber(int32_t least, int32_t most, int32_t& number)
{
    int32_t value = 0;
    int32_t length = 0;
    for (; length < most; ++length)
    {
        const int digit = ZVDigits::DecimalValue(m_text[length]);
        if (digit == ZVDigits::NotADigit)
            break;
        value = value * 10 + digit;
    }
    if (length < least)
        return false;
    m_text += length;
    number = value;
    return true;
}

double CDateCursor::ReadDecimals()
{
    if ((*m_text != L'.' && *m_text != L',') || ZVDigits::DecimalValue(m_text[1]) == ZVDigits::NotADigit)
        return 0.0;
    ++m_text;
    double value = 0.0;
    double unit = 1.0;
    for (int32_t count = 0; IsAtDigit(); ++count, ++m_text)
    {
        if (count >= MaximumDecimals)
            continue;
        value = value * 10.0 + ZVDigits::DecimalValue(*m_text);
        unit *= 10.0;
    }
    return value / unit;
}

bool CDateCursor::ReadName(const wchar_t* const* names, int32_t count, int32_t& index)
{
    const size_t length = CountLetters(m_text);
    if (length < LeastNameLength)
        return false;
    for (index = 0; index < count; ++index)
        if (length <= wcslen(names[index]) && IsStartOf(m_text, length, names[index]))
        {
            m_text += length;
            return true;
        }
    return false;
}

bool CDateCursor::SkipWord(const wchar_t* word)
{
    const size_t length = wcslen(word);
    if (CountLetters(m_text) != length || !IsStartOf(m_text, length, word))
        return false;
    m_text += length;
    return true;
}
