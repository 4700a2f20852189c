#include "core/containers/ZVStringArray.h"

#include <cwchar>
#include <new>
#include <utility>

namespace
{
// Walks through the parts of a text. After Next has returned true, Part and Length hold the current one.
class Tokenizer
{
public:
    Tokenizer(const wchar_t* text, const wchar_t* delimiter, size_t delimiterLength)
        : m_rest(text), m_delimiter(delimiter), m_delimiterLength(delimiterLength)
    {
    }

    bool Next()
    {
        if (*m_rest == L'\0')
            return false;
        Part = m_rest;
        const wchar_t* const found = FindDelimiter();
        Length = found != nullptr ? static_cast<size_t>(found - m_rest) : wcslen(m_rest);
        m_rest = found != nullptr ? found + m_delimiterLength : m_rest + Length;
        return true;
    }

    const wchar_t* Part = nullptr;
    size_t Length = 0;

private:
    const wchar_t* FindDelimiter() const
    {
        if (m_delimiterLength == 0)
            return nullptr;
        return m_delimiterLength == 1 ? wcschr(m_rest, *m_delimiter) : wcsstr(m_rest, m_delimiter);
    }

    const wchar_t* m_rest;
    const wchar_t* m_delimiter;
    size_t m_delimiterLength;
};

int32_t ToLength(size_t length)
{
    if (length > INT32_MAX)
        throw std::bad_alloc();
    return static_cast<int32_t>(length);
}
}

void ZVStringArray::SetSplit(const wchar_t* text, wchar_t delimiter)
{
    const wchar_t delimiterText[] = {delimiter, L'\0'};
    SetSplit(text, delimiterText);
}

void ZVStringArray::SetSplit(const wchar_t* text, const wchar_t* delimiter)
{
    // The parts go to another array first, because the text and the delimiter may be strings of this one.
    ZVStringArray parts;
    if (text != nullptr)
    {
        const size_t delimiterLength = delimiter != nullptr ? wcslen(delimiter) : 0;
        size_t partCount = 0;
        for (Tokenizer counter(text, delimiter, delimiterLength); counter.Next();)
            ++partCount;
        parts.Reserve(ToLength(partCount));
        for (Tokenizer tokens(text, delimiter, delimiterLength); tokens.Next();)
            parts.Add(ZVString(tokens.Part, ToLength(tokens.Length)));
    }
    *this = std::move(parts);
}

ZVString ZVStringArray::GetJoined(const wchar_t* separator, int32_t from) const
{
    if (!IsInside(from))
        return ZVString();

    const size_t separatorLength = separator != nullptr ? wcslen(separator) : 0;
    const size_t gaps = static_cast<size_t>(m_count - from) - 1;
    size_t length = gaps * separatorLength;
    for (int32_t index = from; index < m_count; ++index)
        length += static_cast<size_t>((*this)[index].GetLength());

    ZVString joined;
    wchar_t* const characters = joined.GetBuffer(ToLength(length), true, false);
    wchar_t* end = characters;
    for (int32_t index = from; index < m_count; ++index)
    {
        if (index > from)
        {
            wmemcpy(end, separator, separatorLength);
            end += separatorLength;
        }
        const ZVString& part = (*this)[index];
        wmemcpy(end, part.GetText(), static_cast<size_t>(part.GetLength()));
        end += part.GetLength();
    }
    *end = L'\0';
    joined.ReleaseBuffer(ToLength(length));
    return joined;
}

int32_t ZVStringArray::FindText(const wchar_t* text, bool caseSensitive) const
{
    for (int32_t index = 0; index < m_count; ++index)
        if ((*this)[index].IsEqual(text, caseSensitive))
            return index;
    return -1;
}
