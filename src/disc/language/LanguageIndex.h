#pragma once

#include "core/string/ZVCharacter.h"
#include "disc/language/LanguageTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string_view>

// What the program carries of the language table: made by the compiler, sorted for binary search, without a pointer.
namespace LanguageIndex
{
// Rows with a language.
inline constexpr size_t RowCount = std::size(LanguageTable) - 1;

// The lowered form of a character. Codes and the table's names are Latin-1, and must be found whatever locale the program runs in
// (a Turkish one does not pair "I" with "i"), so Latin-1 is lowered by its own rule.
constexpr wchar_t ToLower(wchar_t character)
{
    constexpr wchar_t Latin1End = 0x100;
    if (character < 0 || character >= Latin1End)
        return ZVCharacter::ToLower(character);
    const bool isUpper =
        (character >= L'A' && character <= L'Z') || (character >= 0xC0 && character <= 0xDE && character != 0xD7);
    return isUpper ? static_cast<wchar_t>(character + 0x20) : character;
}

// --- Names ---------------------------------------------------------------------------------------------------------------------

// Only the name that begins a row is kept of it: each of its other names begins a row with the same code, as is checked below.
constexpr std::wstring_view GetFirstName(const LanguageRow& row)
{
    const std::wstring_view names = row.Name;
    return names.substr(0, names.find(L';'));
}

constexpr size_t CountTextLength()
{
    size_t length = 0;
    for (size_t row = 0; row < RowCount; ++row)
        length += GetFirstName(LanguageTable[row]).size() + std::wstring_view(LanguageTable[row].Code).size();
    return length;
}

// Where a row's name begins in the text; its code follows the name directly.
struct RowText
{
    uint16_t Start;
    uint8_t NameLength;
    uint8_t CodeLength;
};

// Names and codes of all rows in their order, in Latin-1.
struct NameTable
{
    std::array<RowText, RowCount> Rows;
    std::array<char, CountTextLength()> Text;

    constexpr std::string_view GetName(size_t row) const { return {Text.data() + Rows[row].Start, Rows[row].NameLength}; }
    constexpr std::string_view GetCode(size_t row) const
    {
        return {Text.data() + Rows[row].Start + Rows[row].NameLength, Rows[row].CodeLength};
    }
};

constexpr NameTable MakeNames()
{
    NameTable table {};
    size_t end = 0;
    const auto append = [&](std::wstring_view text)
    {
        for (const wchar_t character : text)
            table.Text[end++] = static_cast<char>(static_cast<unsigned char>(character));
        return static_cast<uint8_t>(text.size());
    };
    for (size_t row = 0; row < RowCount; ++row)
    {
        RowText& text = table.Rows[row];
        text.Start = static_cast<uint16_t>(end);
        text.NameLength = append(GetFirstName(LanguageTable[row]));
        text.CodeLength = append(LanguageTable[row].Code);
    }
    return table;
}

inline constexpr NameTable Names = MakeNames();
static_assert(Names.Text.size() <= UINT16_MAX);

// Below 0, 0, or above 0: whether a name of the table comes before, is, or comes behind another text, without regard to case.
constexpr int Compare(std::string_view name, std::wstring_view text)
{
    const size_t shared = std::min(name.size(), text.size());
    for (size_t index = 0; index < shared; ++index)
    {
        const wchar_t left = ToLower(static_cast<unsigned char>(name[index]));
        const wchar_t right = ToLower(text[index]);
        if (left != right)
            return left < right ? -1 : 1;
    }
    return static_cast<int>(name.size() > shared) - static_cast<int>(text.size() > shared);
}

// The row that a name begins, or RowCount.
constexpr size_t FindName(std::wstring_view name)
{
    size_t first = 0;
    size_t end = RowCount;
    while (first < end)
    {
        const size_t middle = (first + end) / 2;
        const int order = Compare(Names.GetName(middle), name);
        if (order == 0)
            return middle;
        if (order < 0)
            first = middle + 1;
        else
            end = middle;
    }
    return RowCount;
}

constexpr bool AreNamesSorted()
{
    for (size_t row = 1; row < RowCount; ++row)
    {
        if (Compare(Names.GetName(row - 1), GetFirstName(LanguageTable[row])) >= 0)
            return false;
    }
    return true;
}
static_assert(AreNamesSorted(), "a name of LanguageTable is out of order or stands there twice");

constexpr bool DoAllNamesBeginARow()
{
    for (size_t row = 0; row < RowCount; ++row)
    {
        std::wstring_view names = LanguageTable[row].Name;
        while (names.find(L';') != names.npos)
        {
            names.remove_prefix(names.find(L';') + std::wstring_view(L"; ").size());
            const size_t found = FindName(names.substr(0, names.find(L';')));
            if (found == RowCount || Names.GetCode(found) != Names.GetCode(row))
                return false;
        }
    }
    return true;
}
static_assert(DoAllNamesBeginARow(), "a synonym of LanguageTable has no row of its own, or one with another code");

// --- Codes ---------------------------------------------------------------------------------------------------------------------

// A code of letters as a number, without regard to case; 0 for a text that is not letters alone or has more than three.
constexpr uint16_t PackCode(std::wstring_view code)
{
    constexpr size_t MaximumLength = 3;
    if (code.size() > MaximumLength)
        return 0;
    unsigned packed = 0;
    for (const wchar_t character : code)
    {
        const wchar_t letter = ToLower(character);
        if (letter < L'a' || letter > L'z')
            return 0;
        packed = packed << 5 | static_cast<unsigned>(letter - L'a' + 1);
    }
    return static_cast<uint16_t>(packed);
}

// A code with the first row that has it.
struct CodeRow
{
    uint16_t Code;
    uint16_t Row;
};

// The codes of up to two columns of the table, sorted, each of them once.
struct CodeList
{
    std::array<CodeRow, 2 * RowCount> Codes;
    size_t Count;
};

template <const wchar_t* LanguageRow::*... Columns>
constexpr CodeList CollectCodes()
{
    CodeList list {};
    for (size_t row = 0; row < RowCount; ++row)
    {
        for (const wchar_t* code : {LanguageTable[row].*Columns...})
        {
            const uint16_t packed = code == nullptr ? uint16_t {0} : PackCode(code);
            if (packed != 0)
                list.Codes[list.Count++] = {packed, static_cast<uint16_t>(row)};
        }
    }
    const auto begin = list.Codes.begin();
    const auto end = begin + static_cast<ptrdiff_t>(list.Count);
    std::sort(begin, end,
              [](CodeRow left, CodeRow right)
              { return left.Code != right.Code ? left.Code < right.Code : left.Row < right.Row; });
    list.Count =
        static_cast<size_t>(std::unique(begin, end, [](CodeRow left, CodeRow right) { return left.Code == right.Code; }) - begin);
    return list;
}

template <const wchar_t* LanguageRow::*... Columns>
constexpr auto MakeCodes()
{
    constexpr CodeList list = CollectCodes<Columns...>();
    std::array<CodeRow, list.Count> codes {};
    std::copy_n(list.Codes.begin(), list.Count, codes.begin());
    return codes;
}

inline constexpr auto Codes = MakeCodes<&LanguageRow::Code, &LanguageRow::AltCode>();
inline constexpr auto ShortCodes = MakeCodes<&LanguageRow::ShortCode>();

// The first row with a code, or RowCount.
template <size_t Count>
constexpr size_t FindCode(const std::array<CodeRow, Count>& codes, std::wstring_view code)
{
    const uint16_t packed = PackCode(code);
    const auto found =
        std::lower_bound(codes.begin(), codes.end(), packed, [](CodeRow entry, uint16_t wanted) { return entry.Code < wanted; });
    return found != codes.end() && found->Code == packed ? found->Row : RowCount;
}
}
