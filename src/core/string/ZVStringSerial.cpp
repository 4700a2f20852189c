// ZVString: quoting, similarity, the length-prefixed form.

#include "core/containers/ZVNumberArray.h"
#include "core/string/ZVCharacter.h"
#include "core/string/ZVString.h"
#include "core/string/ZVWideText.h"

#include <algorithm>
#include <climits>

namespace
{
// The buffer of the serial form grows by this many characters, and a large one by about a sixteenth of its length, in whole
// steps: a huge text that grew by a fixed step would be copied over and over.
constexpr int32_t SerialGrowBlock = 1024;
constexpr int32_t SerialStepShare = 16;

// IsSimilar allows one edit for this many characters, up to a limit.
constexpr int32_t CharactersPerEdit = 4;
constexpr int32_t MaximumSimilarEdits = 3;

bool IsASCIIDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

// Reads "(", digits and ":" at position; a number that is too large becomes INT32_MAX. False if they are not there.
bool ReadPrefix(const ZVString& text, int32_t& position, int32_t& count)
{
    if (text.GetAt(position) != L'(' || !IsASCIIDigit(text.GetAt(position + 1)))
        return false;
    int64_t value = 0;
    for (++position; IsASCIIDigit(text.GetAt(position)); ++position)
        value = std::min<int64_t>(value * 10 + (text.GetAt(position) - L'0'), INT32_MAX);
    count = static_cast<int32_t>(value);
    return text.GetAt(position++) == L':';
}
}

ZVString ZVString::QuoteForShell() const
{
    ZVString quoted = *this;
    quoted.Replace(L"'", L"'\\''");
    quoted.Insert(0, L'\'');
    quoted.AppendCharacter(L'\'');
    return quoted;
}

int32_t ZVString::GetEditDistance(const wchar_t* other, int32_t limit) const
{
    other = ZVWideText::OrEmpty(other);
    // The copy of a locked string ends at its first NUL, so the copy's length is the one that counts.
    ZVString lowered = *this;
    const int32_t length = lowered.GetLength();
    const int32_t otherLength = ZVWideText::LengthOf(other);
    if (std::abs(length - otherLength) > limit)
        return INT_MAX;

    // Only the previous row of the table is ever needed again. A row holds, for each length, the distance of that many first
    // characters of this string.
    lowered.MakeLower();
    ZVNumberArray<int32_t> row;
    row.SetCount(length + 1);
    for (int32_t column = 0; column <= length; ++column)
        row[column] = column;
    for (int32_t line = 1; line <= otherLength; ++line)
    {
        const wchar_t character = ZVCharacter::ToLower(other[line - 1]);
        int32_t diagonal = row[0];
        row[0] = line;
        for (int32_t column = 1; column <= length; ++column)
        {
            const int32_t substituted = diagonal + (lowered[column - 1] == character ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({substituted, row[column] + 1, row[column - 1] + 1});
        }
        if (row[length] - (otherLength - line) > limit)
            return INT_MAX;
    }
    return row[length];
}

bool ZVString::IsSimilar(const wchar_t* other) const
{
    const int32_t allowed = std::min(GetLength() / CharactersPerEdit, MaximumSimilarEdits);
    return GetEditDistance(other, allowed) <= allowed;
}

void ZVString::AppendLengthPrefixed(const ZVString& text)
{
    const ZVString value = text;  // text may be this string
    const ZVString prefix = ZVFormat(L"(%d:", value.GetLength());
    const int32_t growBlock = std::max(GetLength() / SerialStepShare / SerialGrowBlock, 1) * SerialGrowBlock;
    Append(prefix, prefix.GetLength(), growBlock);
    Append(value, value.GetLength(), growBlock);
    Append(L")", 1, growBlock);
}

void ZVString::AppendLengthPrefixed(int32_t value)
{
    AppendLengthPrefixed(FromInt(value));
}

bool ZVString::ReadLengthPrefixed(int32_t& position, ZVString& value) const
{
    int32_t start = position;
    int32_t count = 0;
    if (position < 0 || !ReadPrefix(*this, start, count))
        return false;
    if (count >= GetLength() - start || m_text[start + count] != L')')
        return false;
    value = Mid(start, count);
    position = start + count + 1;
    return true;
}

int32_t ZVString::ReadLengthPrefixedInt(int32_t& position, int32_t defaultValue) const
{
    ZVString value;
    return ReadLengthPrefixed(position, value) ? value.ToInt() : defaultValue;
}

bool ZVString::IsLengthPrefixed() const
{
    int32_t position = 0;
    int32_t count = 0;
    return ReadPrefix(*this, position, count);
}
