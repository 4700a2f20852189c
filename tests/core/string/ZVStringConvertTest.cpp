#include "core/containers/ZVBuffer.h"
#include "core/string/StringProbe.h"
#include "core/string/ZVStringUTF8.h"

#include <memory>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using namespace std::string_literals;

TEST(ZVStringConvert, NarrowAndEncodedUTF8)
{
    const std::unique_ptr<char[]> narrow(S(L"a\u00e9\u00ff\u0100\u20ac").GetNarrow());
    EXPECT_STREQ(narrow.get(), "a\xe9\xff??");
    S text(L"old");
    text.SetFromNarrow("ab", -2);
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(ZVStringUTF8(static_cast<const wchar_t*>(nullptr)).Get(), nullptr);
    ExpectRows<wchar_t, std::string>({
        {0x7f, "\x7f"}, {0x80, "\xc2\x80"}, {0x7ff, "\xdf\xbf"}, {0x800, "\xe0\xa0\x80"}, {0xffff, "\xef\xbf\xbf"},
        {0x10000, "\xf1\x90\x80\x80"}, {0x1f600, "\xf1\x9f\x98\x80"},
    }, [](wchar_t character)
    {
        int32_t size = 0;
        const std::unique_ptr<char[]> bytes(S(&character, 1).GetUTF8(&size));
        return std::string(bytes.get(), static_cast<size_t>(size));
    });
}

TEST(ZVStringConvert, DecodeUTF8)
{
    ExpectRows<std::string, std::wstring>({
        {"\xed\xa0\x80", std::wstring(1, 0xd800)}, {"\xf7\xbf\xbf\xbf\xf8\x88", L"?\xf8\x88"},
        {"\xe9 ", L"\u00e9 "}, {"\xc3\xc3\xa9", L"\xc3\xe9"}, {"\xe2\x82 ", L"\xe2\x82 "}, {"\xe2\x82", L"\xe2\x82"},  // broken
        {"\xc1\x81", L"A"}, {"a\xc0\x80z", L"a\0z"s},  // overlong
        {"\xef\xbf\xbf", L"\xffff"}, {"123456789012345\xc3\xa9-8901234", L"123456789012345\u00e9-8901234"},
    }, [](const std::string& bytes)
    {
        // Exactly as many bytes as there are, so that reading past them is a fault, in a block of just their characters.
        const EmptyPool pool;
        const std::vector<char> exact(bytes.begin(), bytes.end());
        S counted, text;
        counted.SetFromUTF8(exact.data(), static_cast<int32_t>(exact.size()));
        EXPECT_EQ(counted.GetCapacity(), counted.GetLength() + 1);
        text.SetFromNarrow(bytes.c_str());
        text.ReinterpretAsUTF8();
        EXPECT_EQ(TextOf(text), TextOf(counted));
        return TextOf(counted);
    });
    const std::string large = "\xc3\xa9" + std::string(1000, 'x');
    EXPECT_EQ(S::FromUTF8(large.c_str()).GetCapacity(), 1002) << "only a text longer than the first two buffers is measured";
}

// Reads the units as UTF-16 and as UTF-32. 0x6100 stands for a swapped "a" in either width.
S FromUnits(std::vector<uint32_t> units, int32_t count, bool honourMark, bool swapped)
{
    const std::vector<uint16_t> narrowUnits(units.begin(), units.end());
    std::replace(units.begin(), units.end(), 0x6100u, 0x61000000u);
    S text(L"old"), wideText(L"old");
    text.SetFromUTF16(narrowUnits.data(), count, honourMark, swapped);
    wideText.SetFromUTF32(units.data(), count, honourMark, swapped);
    EXPECT_EQ(TextOf(wideText), TextOf(text));
    return text;
}

S FromBytes(ZVEncoding encoding, const std::string& bytes, bool dropNulBytes = false)
{
    ZVBuffer buffer;
    buffer.Append(bytes.data(), static_cast<int64_t>(bytes.size()));
    S text(L"old");
    text.SetFromBytes(buffer, encoding, dropNulBytes);
    EXPECT_EQ(buffer.GetUsed(), static_cast<int64_t>(bytes.size()));
    return text;
}

TEST(ZVStringConvert, UnitsAndBytes)
{
    constexpr bool Honour = true, Swap = true;
    using enum ZVEncoding;
    ExpectTexts({
        {FromUnits({'a', 'b', 0, 'c'}, -1, Honour, !Swap), L"ab"}, {FromUnits({0xfffe, 0x6100}, 2, Honour, !Swap), L"a"},
        {FromUnits({'a', 0}, -2, Honour, !Swap),           L""},   {FromUnits({0xfeff, '-'}, 2, !Honour, !Swap),   L"\xfeff-"},
        {FromUnits({0x6100}, 1, !Honour, Swap),            L"a"},   {FromUnits({0xfeff, 'a'}, 2, Honour, Swap),     L"a"},
        {FromUnits({0xd83d, 0xde00}, 2, Honour, !Swap), std::wstring {0xd83d, 0xde00}},  // surrogates are not combined
        {FromBytes(Narrow, "\xc3\xa9\0a"s),         L"\xc3\xa9"}, {FromBytes(Narrow, "\0ab\0\0cd\0"s, true),   L"abcd"},
        {FromBytes(UTF8, "\xef\xbb\xbf-"s),         L"\xfeff-"},  {FromBytes(UTF8, "\xc3\0\xa9"s, true),       L"\u00e9"},
        {FromBytes(UTF8WithMark, "\xef\xbb\xbf-"s), L"-"},        {FromBytes(UTF16, "\xfe\xff\0-"s),           L"-"},
        {FromBytes(UTF16, "a\0b"s),                 L"a"},        {FromBytes(UTF16, "a\0\0\0\0\1\0\0"s, true), L"a\u0100"},
        {FromBytes(UTF32, "\xff\xfe\0\0-\0\0\0"s),  L"-"},        {FromBytes(Detect, "a\0b\0"s),               L"ab"},
    });
    ExpectRows<std::string, ZVEncoding>({
        {"\xfe\xff", UTF16}, {"\xff\xfe\0\0a\0\0\0"s, UTF16}, {"\xef\xbb\xbf", UTF8WithMark},
        {"\0\0\0"s, Narrow}, {"a\xf0\x9f\x98\x80", UTF8}, {"\xc3\xa9\xe9", Narrow},
        {"\xc3\xa9\0\0b"s, UTF16}, {"a\0\0\0b\0\0\0"s, UTF32},  // two zero bytes on the way, and three
        {"\xc3\xa9\0\0\0"s, UTF8}, {"\xc3\xa9\xc3\0\0"s, Narrow},  // trailing zero bytes
    }, [](const std::string& bytes)
    {
        const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
        return S::DetectEncoding(exact.data(), static_cast<int32_t>(exact.size()));
    });
}
}
