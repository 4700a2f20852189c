// ZVString: comparing and searching.

#include "contracts/IZVStringTools.h"
#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"
#include "core/string/ZVCharacter.h"
#include "core/string/ZVString.h"
#include "core/string/ZVWideText.h"

namespace
{
// Like wcsncmp, but with lowered characters.
int32_t CompareFolded(const wchar_t* left, const wchar_t* right, size_t count)
{
    for (size_t index = 0; index < count; ++index)
    {
        const wchar_t leftCharacter = ZVCharacter::ToLower(left[index]);
        const wchar_t rightCharacter = ZVCharacter::ToLower(right[index]);
        if (leftCharacter != rightCharacter)
            return leftCharacter < rightCharacter ? -1 : 1;
        if (leftCharacter == L'\0')
            return 0;
    }
    return 0;
}

int32_t CompareCharacters(const wchar_t* left, const wchar_t* right, size_t count, bool caseSensitive)
{
    return caseSensitive ? wcsncmp(left, right, count) : CompareFolded(left, right, count);
}

bool IsSameCharacter(wchar_t left, wchar_t right, bool caseSensitive)
{
    return left == right || (!caseSensitive && ZVCharacter::ToLower(left) == ZVCharacter::ToLower(right));
}

// The first occurrence of a text, whose length is given, or null.
const wchar_t* FindText(const wchar_t* where, const wchar_t* text, size_t length, bool caseSensitive)
{
    if (caseSensitive)
        return wcsstr(where, text);
    for (; *where != L'\0'; ++where)
        if (CompareFolded(where, text, length) == 0)
            return where;
    return nullptr;
}
}

bool ZVString::IsEqual(const wchar_t* text, bool caseSensitive) const
{
    text = ZVWideText::OrEmpty(text);
    return caseSensitive ? wcscmp(m_text, text) == 0 : CompareFolded(m_text, text, SIZE_MAX) == 0;
}

int32_t ZVString::CompareStart(const wchar_t* text, bool caseSensitive) const
{
    text = ZVWideText::OrEmpty(text);
    return CompareCharacters(m_text, text, wcslen(text), caseSensitive);
}

int32_t ZVString::CompareEnd(const wchar_t* text, bool caseSensitive) const
{
    text = ZVWideText::OrEmpty(text);
    const size_t count = wcslen(text);
    const size_t length = static_cast<size_t>(GetLength());
    return count > length ? -1 : CompareCharacters(m_text + (length - count), text, count, caseSensitive);
}

bool ZVString::StartsWith(const wchar_t* text, bool caseSensitive) const
{
    return *ZVWideText::OrEmpty(text) != L'\0' && CompareStart(text, caseSensitive) == 0;
}

bool ZVString::EndsWith(const wchar_t* text, bool caseSensitive) const
{
    return *ZVWideText::OrEmpty(text) != L'\0' && CompareEnd(text, caseSensitive) == 0;
}

bool ZVString::StartsWith(wchar_t character, bool caseSensitive) const
{
    return !IsEmpty() && IsSameCharacter(m_text[0], character, caseSensitive);
}

bool ZVString::EndsWith(wchar_t character, bool caseSensitive) const
{
    return !IsEmpty() && IsSameCharacter(m_text[GetLength() - 1], character, caseSensitive);
}

int32_t ZVString::Find(wchar_t character, int32_t start) const
{
    if (start < 0 || start >= GetLength() || character == L'\0')
        return -1;
    const wchar_t* found = wcschr(m_text + start, character);
    return found == nullptr ? -1 : static_cast<int32_t>(found - m_text);
}

int32_t ZVString::Find(const wchar_t* text, int32_t start) const
{
    if (start < 0 || start >= GetLength())
        return -1;
    const wchar_t* found = wcsstr(m_text + start, ZVWideText::OrEmpty(text));
    return found == nullptr ? -1 : static_cast<int32_t>(found - m_text);
}

int32_t ZVString::FindNoCase(const wchar_t* text, int32_t start, bool skipMatch) const
{
    IZVStringTools* tools = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetTools(false);
    if (tools == nullptr || start < 0 || start >= GetLength())
        return -1;
    text = ZVWideText::OrEmpty(text);
    const int32_t found = tools->Find(m_text + start, text, IZVStringTools::FindFolded);
    if (found == -1)
        return -1;
    return start + found + (skipMatch ? static_cast<int32_t>(wcslen(text)) : 0);
}

int32_t ZVString::FindLastOf(const wchar_t* text, bool caseSensitive) const
{
    text = ZVWideText::OrEmpty(text);
    const size_t count = wcslen(text);
    if (count > static_cast<size_t>(GetLength()))
        return -1;
    for (int32_t position = GetLength() - static_cast<int32_t>(count); position >= 0; --position)
        if (CompareCharacters(m_text + position, text, count, caseSensitive) == 0)
            return position;
    return -1;
}

int32_t ZVString::ReverseFind(wchar_t character, int32_t start) const
{
    const int32_t length = GetLength();
    for (int32_t position = start < 0 || start >= length ? length - 1 : start; position >= 0; --position)
        if (m_text[position] == character)
            return position;
    return -1;
}

int32_t ZVString::FindOneOf(const wchar_t* set, int32_t start) const
{
    if (start < 0 || start >= GetLength())
        return -1;
    const wchar_t* found = wcspbrk(m_text + start, ZVWideText::OrEmpty(set));
    return found == nullptr ? -1 : static_cast<int32_t>(found - m_text);
}

int32_t ZVString::ReverseFindOneOf(const wchar_t* set, int32_t start) const
{
    const int32_t length = GetLength();
    for (int32_t position = start < 0 || start >= length ? length - 1 : start; position >= 0; --position)
        if (ZVWideText::IsInSet(set, m_text[position]))
            return position;
    return -1;
}

int32_t ZVString::FindNth(const wchar_t* text, int32_t n, bool caseSensitive) const
{
    text = ZVWideText::OrEmpty(text);
    const size_t count = wcslen(text);
    if (count == 0 || n < 1)
        return -1;
    const wchar_t* found = FindText(m_text, text, count, caseSensitive);
    for (; found != nullptr && n > 1; --n)
        found = FindText(found + count, text, count, caseSensitive);
    return found == nullptr ? -1 : static_cast<int32_t>(found - m_text);
}

int32_t ZVString::CountOf(const wchar_t* text, bool caseSensitive) const
{
    text = ZVWideText::OrEmpty(text);
    const size_t count = wcslen(text);
    if (count == 0)
        return 0;
    int32_t hits = 0;
    for (const wchar_t* found = FindText(m_text, text, count, caseSensitive); found != nullptr;
         found = FindText(found + count, text, count, caseSensitive))
        ++hits;
    return hits;
}

bool ZVString::IsNumber(int32_t maximumLength) const
{
    const int32_t length = GetLength();
    if (length < 1 || length > maximumLength)
        return false;
    for (int32_t position = 0; position < length; ++position)
    {
        const wchar_t character = m_text[position];
        const bool isSign = character == L'-' && position == 0;
        if (!isSign && character != L',' && character != L'.' && !ZVCharacter::IsDigit(character))
            return false;
    }
    return true;
}
