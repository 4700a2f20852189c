// ZVString: cutting, copying parts, editing.

#include "core/string/ZVCharacter.h"
#include "core/string/ZVString.h"
#include "core/string/ZVStringReplaceHit.h"
#include "core/string/ZVWideText.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace
{
void MoveCharacters(wchar_t* target, const wchar_t* source, int32_t count)
{
    memmove(target, source, static_cast<size_t>(count) * sizeof(wchar_t));
}

// The first position from start on whose character does not pass the test, at most end.
template <class Test>
int32_t SkipForward(const wchar_t* text, int32_t start, int32_t end, Test test)
{
    while (start < end && test(text[start]))
        ++start;
    return start;
}

// The position after the last character before end that does not pass the test, at least start.
template <class Test>
int32_t SkipBackward(const wchar_t* text, int32_t start, int32_t end, Test test)
{
    while (end > start && test(text[end - 1]))
        --end;
    return end;
}

struct IsCharacter
{
    wchar_t Character;
    bool operator()(wchar_t character) const { return character == Character; }
};

struct IsInSet
{
    const wchar_t* Set;
    bool operator()(wchar_t character) const { return ZVWideText::IsInSet(Set, character); }
};
}

// Keeps the characters from start up to but not including end. Both must lie inside the string.
void ZVString::KeepRange(int32_t start, int32_t end)
{
    const int32_t count = end - start;
    if (count == GetLength())
        return;
    if (count <= 0)
    {
        Empty();
        return;
    }
    if (IsShared(Data()))
    {
        *this = Mid(start, count);
        return;
    }
    wchar_t* buffer = GetBuffer(-1);
    MoveCharacters(buffer, buffer + start, count);
    ReleaseBuffer(count);
}

void ZVString::Trim(int32_t front, int32_t back)
{
    const int64_t first = std::max(front, 0);
    const int64_t last = std::max(back, 0);
    if (first + last >= GetLength())
        Empty();
    else
        KeepRange(static_cast<int32_t>(first), GetLength() - static_cast<int32_t>(last));
}

int32_t ZVString::TrimFrontTo(const wchar_t* text, bool keepFound)
{
    const int32_t found = Find(text);
    if (found == -1)
        return 0;
    KeepRange(keepFound ? found : found + ZVWideText::LengthOf(text), GetLength());
    return 1;
}

int32_t ZVString::TrimFrontTo(wchar_t character, bool keepFound)
{
    const int32_t found = Find(character);
    if (found == -1)
        return 0;
    KeepRange(keepFound ? found : found + 1, GetLength());
    return 1;
}

int32_t ZVString::TrimFrontToLast(const wchar_t* text, bool keepFound)
{
    const int32_t found = FindLastOf(text);
    if (found == -1)
        return 0;
    KeepRange(keepFound ? found : found + ZVWideText::LengthOf(text), GetLength());
    return 1;
}

int32_t ZVString::TrimFrontToLast(wchar_t character, bool keepFound)
{
    const int32_t found = ReverseFind(character);
    if (found == -1)
        return 0;
    KeepRange(keepFound ? found : found + 1, GetLength());
    return 1;
}

int32_t ZVString::TrimBackFrom(const wchar_t* text, bool keepFound)
{
    const int32_t found = Find(text);
    if (found == -1)
        return 0;
    KeepRange(0, keepFound ? found + ZVWideText::LengthOf(text) : found);
    return 1;
}

int32_t ZVString::TrimBackFrom(wchar_t character, bool keepFound)
{
    const int32_t found = Find(character);
    if (found == -1)
        return 0;
    KeepRange(0, keepFound ? found + 1 : found);
    return 1;
}

int32_t ZVString::TrimBackFromLast(const wchar_t* text, bool keepFound)
{
    const int32_t found = FindLastOf(text);
    if (found == -1)
        return 0;
    KeepRange(0, keepFound ? found + ZVWideText::LengthOf(text) : found);
    return 1;
}

int32_t ZVString::TrimBackFromLast(wchar_t character, bool keepFound)
{
    const int32_t found = ReverseFind(character);
    if (found == -1)
        return 0;
    KeepRange(0, keepFound ? found + 1 : found);
    return 1;
}

void ZVString::TrimWhitespace()
{
    const int32_t start = SkipForward(m_text, 0, GetLength(), ZVCharacter::IsSpace);
    KeepRange(start, SkipBackward(m_text, start, GetLength(), ZVCharacter::IsSpace));
}

void ZVString::TrimLeft(wchar_t character)
{
    KeepRange(SkipForward(m_text, 0, GetLength(), IsCharacter {character}), GetLength());
}

void ZVString::TrimRight(wchar_t character)
{
    KeepRange(0, SkipBackward(m_text, 0, GetLength(), IsCharacter {character}));
}

void ZVString::Trim(wchar_t character)
{
    const int32_t start = SkipForward(m_text, 0, GetLength(), IsCharacter {character});
    KeepRange(start, SkipBackward(m_text, start, GetLength(), IsCharacter {character}));
}

void ZVString::TrimLeft(const wchar_t* set)
{
    KeepRange(SkipForward(m_text, 0, GetLength(), IsInSet {set}), GetLength());
}

void ZVString::TrimRight(const wchar_t* set)
{
    KeepRange(0, SkipBackward(m_text, 0, GetLength(), IsInSet {set}));
}

void ZVString::Trim(const wchar_t* set)
{
    const int32_t start = SkipForward(m_text, 0, GetLength(), IsInSet {set});
    KeepRange(start, SkipBackward(m_text, start, GetLength(), IsInSet {set}));
}

ZVString ZVString::Mid(int32_t start, int32_t count) const
{
    const int32_t length = GetLength();
    const int32_t first = std::clamp(start, 0, length);
    const int32_t taken = std::clamp(count, 0, length - first);
    if (taken == length)
        return *this;
    ZVString part;
    part.Append(m_text + first, taken);
    return part;
}

ZVString ZVString::Left(int32_t count) const
{
    return Mid(0, count);
}

ZVString ZVString::Right(int32_t count) const
{
    const int32_t taken = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - taken, taken);
}

ZVString ZVString::GetBefore(const wchar_t* set, bool keepAllIfNotFound, bool includeSeparator) const
{
    const int32_t found = FindOneOf(set);
    if (found == -1)
        return keepAllIfNotFound ? *this : ZVString();
    return Left(includeSeparator ? found + 1 : found);
}

ZVString ZVString::GetAfterLast(const wchar_t* set, bool keepAllIfNotFound, bool includeSeparator) const
{
    const int32_t found = ReverseFindOneOf(set);
    if (found == -1)
        return keepAllIfNotFound ? *this : ZVString();
    return Mid(includeSeparator ? found : found + 1);
}

ZVString ZVString::GetBetween(const wchar_t* before, const wchar_t* after) const
{
    const int32_t found = Find(before);
    if (found == -1)
        return ZVString();
    const int32_t start = found + ZVWideText::LengthOf(before);
    const int32_t end = Find(after, start);
    return end == -1 ? ZVString() : Mid(start, end - start);
}

void ZVString::Insert(int32_t position, const wchar_t* text)
{
    if (position >= 0 && position <= GetLength())
        Replace(position, position, text);
}

void ZVString::Insert(int32_t position, wchar_t character)
{
    if (position >= 0 && position <= GetLength())
        Replace(position, position, ZVStringPiece(&character, 1));
}

void ZVString::SetAt(int32_t index, wchar_t character)
{
    if (index < 0 || index >= GetLength())
        return;
    const int32_t length = character == L'\0' ? index : GetLength();
    GetBuffer(-1)[index] = character;
    ReleaseBuffer(length);
}

int32_t ZVString::Remove(wchar_t character)
{
    const int32_t length = GetLength();
    const int32_t first = Find(character);
    if (first == -1)
        return 0;
    wchar_t* buffer = GetBuffer(-1);
    wchar_t* end = std::remove(buffer + first, buffer + length, character);
    const int32_t kept = static_cast<int32_t>(end - buffer);
    ReleaseBuffer(kept);
    return length - kept;
}

void ZVString::Replace(int32_t start, int32_t end, ZVStringPiece text)
{
    const int32_t length = GetLength();
    if (start < 0 || end < start || end > length)
        return;
    if (text.Characters == nullptr || text.Count < 0)
        text.Count = ZVWideText::LengthOf(text.Characters);
    const int64_t newLength = static_cast<int64_t>(length) - (end - start) + text.Count;
    if (newLength >= INT32_MAX)
        throw std::bad_alloc();
    ZVString copy;
    if (text.Count > 0 && IsOwnText(text.Characters))
    {
        // The text is a part of this string, which is about to move and change.
        copy.Append(text.Characters, text.Count);
        text.Characters = copy.m_text;
    }
    wchar_t* buffer = GetBuffer(std::max(static_cast<int32_t>(newLength), length));
    MoveCharacters(buffer + start + text.Count, buffer + end, length - end);
    if (text.Count > 0)
        memcpy(buffer + start, text.Characters, static_cast<size_t>(text.Count) * sizeof(wchar_t));
    ReleaseBuffer(static_cast<int32_t>(newLength));
}

void ZVString::Cut(const ZVStringReplaceHit* ranges, int32_t count)
{
    const int32_t length = GetLength();
    if (count < 1 || length < 1)
        return;
    wchar_t* buffer = GetBuffer(-1);
    int32_t kept = 0;
    int32_t position = 0;
    for (int32_t index = 0; index < count; ++index)
    {
        const int32_t start = std::clamp(ranges[index].Start, position, length);
        MoveCharacters(buffer + kept, buffer + position, start - position);
        kept += start - position;
        position = std::clamp(ranges[index].End, start, length);
    }
    MoveCharacters(buffer + kept, buffer + position, length - position);
    ReleaseBuffer(kept + length - position);
}

void ZVString::MakeUpper()
{
    const int32_t length = GetLength();
    wchar_t* buffer = GetBuffer(-1);
    for (int32_t index = 0; index < length; ++index)
        buffer[index] = static_cast<wchar_t>(towupper(static_cast<wint_t>(buffer[index])));
    ReleaseBuffer(length);
}

void ZVString::MakeLower()
{
    const int32_t length = GetLength();
    wchar_t* buffer = GetBuffer(-1);
    for (int32_t index = 0; index < length; ++index)
        buffer[index] = ZVCharacter::ToLower(buffer[index]);
    ReleaseBuffer(length);
}
