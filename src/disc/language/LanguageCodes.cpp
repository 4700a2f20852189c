#include "disc/language/LanguageCodes.h"

#include "core/string/ZVCharacter.h"
#include "core/string/ZVUTF8.h"
#include "disc/language/LanguageTable.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace
{
constexpr size_t CodeLength = 3;
constexpr size_t ShortCodeLength = 2;

// Languages must be found whatever locale the program runs in (a Turkish one does not pair "I" with "i"), so Latin-1, which holds
// all of the table's letters, is lowered by its own rule.
wchar_t ToLower(wchar_t character)
{
    constexpr wchar_t Latin1End = 0x100;
    if (character < 0 || character >= Latin1End)
        return ZVCharacter::ToLower(character);
    const bool isUpper =
        (character >= L'A' && character <= L'Z') || (character >= 0xC0 && character <= 0xDE && character != 0xD7);
    return isUpper ? static_cast<wchar_t>(character + 0x20) : character;
}

char ToLowerASCII(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

// A text as the rows are compared with it: lowered, in UTF-8.
std::string Fold(std::wstring_view text)
{
    std::wstring lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), ToLower);
    std::string bytes(ZVUTF8::EncodedSize(lowered.data(), lowered.size()), '\0');
    ZVUTF8::Encode(lowered.data(), lowered.size(), bytes.data());
    return bytes;
}

bool IsCode(const char* column, std::string_view code)
{
    // Nearly all columns differ in the first letter already.
    return *column == code.front() && column == code;
}

bool HasCode(const LanguageRow& row, std::string_view code)
{
    return IsCode(row.Code, code) || IsCode(row.AltCode, code);
}

bool HasShortCode(const LanguageRow& row, std::string_view code)
{
    return IsCode(row.ShortCode, code);
}

bool IsName(std::string_view name, std::string_view folded)
{
    return name.size() == folded.size() && std::equal(name.begin(), name.end(), folded.begin(),
                                                      [](char left, char right) { return ToLowerASCII(left) == right; });
}

bool HasName(const LanguageRow& row, std::string_view name)
{
    constexpr std::string_view Separator = "; ";
    std::string_view names = row.Name;
    size_t end = names.find(';');
    while (end != names.npos && !IsName(names.substr(0, end), name))
    {
        names.remove_prefix(end + Separator.size());
        end = names.find(';');
    }
    return IsName(names.substr(0, end), name);
}

// The first row that a text matches, or null; an empty text matches none.
const LanguageRow* FindRow(bool (*matches)(const LanguageRow& row, std::string_view folded), std::wstring_view text)
{
    if (text.empty())
        return nullptr;
    const std::string folded = Fold(text);
    for (const LanguageRow& row : LanguageTable)
        if (matches(row, folded))
            return &row;
    return nullptr;
}

// The code of a row, or another text for no row.
ZVString CodeOr(const LanguageRow* row, const ZVString& other)
{
    return row == nullptr ? other : ZVString::FromUTF8(row->Code);
}

std::wstring_view WithoutWhitespace(std::wstring_view text)
{
    while (!text.empty() && ZVCharacter::IsSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && ZVCharacter::IsSpace(text.back()))
        text.remove_suffix(1);
    return text;
}
}

ZVString LanguageNameFromCode(const ZVString& code)
{
    const LanguageRow* const row = FindRow(HasCode, code.View().substr(0, CodeLength));
    return row == nullptr ? ZVString() : ZVString::FromUTF8(row->Name).GetBefore(L";", true);
}

ZVString NormalizeLanguageCode(const ZVString& text)
{
    const std::wstring_view view = text.View();
    if (view.size() < ShortCodeLength)
        return {};
    if (view.size() == ShortCodeLength)
        return CodeFromShortCode(text);
    if (view.size() > CodeLength)
        return CodeFromName(text);
    if (view == L"und")
        return {};
    return CodeOr(FindRow(HasCode, view), text);
}

ZVString CodeFromShortCode(const ZVString& code)
{
    return CodeOr(FindRow(HasShortCode, code.View().substr(0, ShortCodeLength)), {});
}

ZVString CodeFromName(const ZVString& name)
{
    const std::wstring_view trimmed = WithoutWhitespace(name.View());
    return trimmed.empty() ? ZVString() : CodeOr(FindRow(HasName, trimmed), name);
}
