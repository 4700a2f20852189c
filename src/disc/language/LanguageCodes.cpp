#include "disc/language/LanguageCodes.h"

#include "disc/language/LanguageIndex.h"

namespace
{
constexpr size_t CodeLength = 3;
constexpr size_t ShortCodeLength = 2;

std::wstring_view View(const ZVString& text)
{
    return {text.GetText(), static_cast<size_t>(text.GetLength())};
}

ZVString ToString(std::string_view text)
{
    ZVString string;
    string.SetFromNarrow(text.data(), static_cast<int32_t>(text.size()));
    return string;
}

// The code of a row, or another text for no row.
ZVString CodeOr(size_t row, const ZVString& other)
{
    return row < LanguageIndex::RowCount ? ToString(LanguageIndex::Names.GetCode(row)) : other;
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
    const size_t row = LanguageIndex::FindCode(LanguageIndex::Codes, View(code).substr(0, CodeLength));
    return row < LanguageIndex::RowCount ? ToString(LanguageIndex::Names.GetName(row)) : ZVString();
}

ZVString NormalizeLanguageCode(const ZVString& text)
{
    const std::wstring_view view = View(text);
    if (view.size() < ShortCodeLength)
        return {};
    if (view.size() == ShortCodeLength)
        return CodeFromShortCode(text);
    if (view.size() > CodeLength)
        return CodeFromName(text);
    if (view == L"und")
        return {};
    return CodeOr(LanguageIndex::FindCode(LanguageIndex::Codes, view), text);
}

ZVString CodeFromShortCode(const ZVString& code)
{
    return CodeOr(LanguageIndex::FindCode(LanguageIndex::ShortCodes, View(code).substr(0, ShortCodeLength)), {});
}

ZVString CodeFromName(const ZVString& name)
{
    const std::wstring_view trimmed = WithoutWhitespace(View(name));
    if (trimmed.empty())
        return {};
    return CodeOr(LanguageIndex::FindName(trimmed), name);
}
