// ZVString: escaping for XML, decoding of XML and HTML entities.

#include "core/string/ZVDigits.h"
#include "core/string/ZVEntities.h"
#include "core/string/ZVString.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace
{
struct Escape
{
    wchar_t Character;
    uint32_t Flag;  // the flag that asks for it; 0 if it is always escaped
    const wchar_t* Text;
};

constexpr Escape Escapes[] = {
    {L'&',   0,                              L"&amp;" },
    {L'<',   0,                              L"&lt;"  },
    {L'>',   0,                              L"&gt;"  },
    {L'\'',  ZVString::EscapeApostrophes,    L"&apos;"},
    {L'"',   ZVString::EscapeQuotationMarks, L"&quot;"},
    {L'\x1', 0,                              L"&#x1;" },
};

// No character above this code is ever escaped, and nearly all of a text lies above it.
constexpr wchar_t LargestEscaped = L'>';

bool IsControl(wchar_t character)
{
    return character >= 0 && character < 32 && character != L'\t' && character != L'\n' && character != L'\r';
}

const wchar_t* FindEscape(wchar_t character, uint32_t flags)
{
    for (const Escape& escape : Escapes)
        if (escape.Character == character && (escape.Flag == 0 || (flags & escape.Flag) != 0))
            return escape.Text;
    return nullptr;
}

bool NeedsEscape(wchar_t character, uint32_t flags)
{
    if (character > LargestEscaped)
        return false;
    return FindEscape(character, flags) != nullptr || ((flags & ZVString::HandleControlCharacters) != 0 && IsControl(character));
}

void AppendEscaped(ZVString& out, wchar_t character, uint32_t flags, int32_t growBlock)
{
    if (const wchar_t* escape = FindEscape(character, flags))
        out.Append(escape, -1, growBlock);
    else if ((flags & ZVString::ReplaceControlCharacters) != 0)
        out.Append(L"?", 1, growBlock);
    else
        out.Append(ZVFormat(L"&#x%x;", character), -1, growBlock);
}

// The character of an entity and the length of the entity in the text; a length of 0 if there is no entity.
struct Decoded
{
    wchar_t Character = L'\0';
    int32_t Length = 0;
};

// Decodes "&#…;" with a decimal number, or a hexadecimal one after "x". A number that is not a character is left as it stands.
Decoded DecodeNumeric(const wchar_t* text)
{
    const wchar_t* position = text + 2;
    const bool isHexadecimal = (*position | 0x20) == L'x';
    if (isHexadecimal)
        ++position;
    const bool isNegative = *position == L'-';
    if (isNegative || *position == L'+')
        ++position;
    int64_t value = 0;
    const auto digitValue = isHexadecimal ? ZVDigits::HexadecimalValue : ZVDigits::DecimalValue;
    for (int digit = digitValue(*position); digit != ZVDigits::NotADigit; digit = digitValue(*++position))
        value = std::min<int64_t>(value * (isHexadecimal ? 16 : 10) + digit, INT32_MAX);
    if (*position != L';' || isNegative || value == 0)
        return {};
    return {static_cast<wchar_t>(value), static_cast<int32_t>(position - text) + 1};
}

bool IsName(const wchar_t* text, size_t length, const char* name)
{
    for (size_t index = 0; index < length; ++index)
        if (text[index] != static_cast<wchar_t>(name[index]))
            return false;
    return name[length] == '\0';
}

Decoded DecodeNamed(const wchar_t* text, std::span<const ZVEntities::Entity> entities)
{
    size_t length = 0;
    while (length <= ZVEntities::MaximumNameLength && text[1 + length] != L';' && text[1 + length] != L'\0')
        ++length;
    if (length > ZVEntities::MaximumNameLength || text[1 + length] != L';')
        return {};
    for (const ZVEntities::Entity& entity : entities)
        if (IsName(text + 1, length, entity.Name))
            return {entity.Character, static_cast<int32_t>(length) + 2};
    return {};
}

// Decodes the entity that begins with the "&" at text.
Decoded DecodeEntity(const wchar_t* text, bool knowsHTML)
{
    if (text[1] == L'#')
        return DecodeNumeric(text);
    const Decoded decoded = DecodeNamed(text, ZVEntities::XML);
    return decoded.Length == 0 && knowsHTML ? DecodeNamed(text, ZVEntities::HTML) : decoded;
}

// A decoded text is never longer than before, so it is decoded in place.
void DecodeEntities(ZVString& text, bool knowsHTML)
{
    const int32_t first = text.Find(L'&');
    if (first == -1)
        return;
    const int32_t length = text.GetLength();
    wchar_t* buffer = text.GetBuffer(-1);
    int32_t written = first;
    for (int32_t position = first; position < length;)
    {
        const Decoded decoded = buffer[position] == L'&' ? DecodeEntity(buffer + position, knowsHTML) : Decoded {};
        if (decoded.Length == 0)
        {
            buffer[written++] = buffer[position++];
            continue;
        }
        buffer[written++] = decoded.Character;
        position += decoded.Length;
    }
    text.ReleaseBuffer(written);
}
}

void ZVString::EscapeXML(uint32_t flags)
{
    const int32_t length = GetLength();
    int32_t position = 0;
    while (position < length && !NeedsEscape(m_text[position], flags))
        ++position;
    if (position == length)
        return;

    ZVString escaped;
    escaped.GetBuffer(static_cast<int32_t>(std::min<int64_t>(static_cast<int64_t>(length) * 110 / 100, INT32_MAX - 1)));
    escaped.ReleaseBuffer(0);
    // Growing by the text's own length keeps the number of buffers small, since an escape is only a few characters long.
    const int32_t growBlock = length;
    int32_t runStart = 0;
    for (; position < length; ++position)
    {
        if (!NeedsEscape(m_text[position], flags))
            continue;
        escaped.Append(m_text + runStart, position - runStart, growBlock);
        AppendEscaped(escaped, m_text[position], flags, growBlock);
        runStart = position + 1;
    }
    escaped.Append(m_text + runStart, length - runStart, growBlock);
    *this = escaped;
}

ZVString ZVString::GetEscapedXML(uint32_t options) const
{
    ZVString escaped = *this;
    escaped.EscapeXML((options & ForAttribute) != 0 ? EscapeAttributeText : EscapeElementText);
    return escaped;
}

void ZVString::DecodeXMLEntities()
{
    DecodeEntities(*this, false);
}

void ZVString::DecodeHTMLEntities()
{
    DecodeEntities(*this, true);
}
