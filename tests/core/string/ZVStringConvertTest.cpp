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

ZVString FromNarrow(const char* bytes, int32_t count)
{
    ZVString text(L"old");
    text.SetFromNarrow(bytes, count);
    return text;
}

TEST(ZVStringConvert, Narrow)
{
    ExpectTexts({
        {"Latin-1",        FromNarrow("a\xe9\xff", -1), L"a\xe9\xff"},
        {"count below -1", FromNarrow("ab", -2),        L""         },
    });
    const std::unique_ptr<char[]> narrow(ZVString(L"a\u00e9\u00ff\u0100\u20ac").GetNarrow());
    EXPECT_STREQ(narrow.get(), "a\xe9\xff??");
}

TEST(ZVStringConvert, EncodeUTF8)
{
    const auto encoded = [](wchar_t character)
    {
        int32_t size = 0;
        const std::unique_ptr<char[]> bytes(ZVString(&character, 1).GetUTF8(&size));
        EXPECT_EQ(bytes[static_cast<size_t>(size)], '\0');
        EXPECT_EQ(TextOf(ZVString::FromUTF8(bytes.get())), std::wstring(1, character > 0xffff ? L'?' : character));
        return std::string(bytes.get());
    };
    EXPECT_EQ(encoded(0x7f), "\x7f");
    EXPECT_EQ(encoded(0x80), "\xc2\x80");
    EXPECT_EQ(encoded(0x7ff), "\xdf\xbf");
    EXPECT_EQ(encoded(0x800), "\xe0\xa0\x80");
    EXPECT_EQ(encoded(0xffff), "\xef\xbf\xbf");
    EXPECT_EQ(encoded(0x10000), "\xf1\x90\x80\x80");
    EXPECT_EQ(encoded(0x1f600), "\xf1\x9f\x98\x80");
    EXPECT_STREQ(ZVStringUTF8(ZVString()).Get(), "");
    EXPECT_EQ(ZVStringUTF8(static_cast<const wchar_t*>(nullptr)).Get(), nullptr);
}

TEST(ZVStringConvert, DecodeUTF8)
{
    struct Row
    {
        const char* Name;
        std::string Bytes;
        std::wstring Expected;
    };
    const Row rows[] = {
        {"last of three bytes",               "\xef\xbf\xbf",                    L"\xffff"                       },
        {"surrogate",                         "\xed\xa0\x80",                    std::wstring(1, 0xd800)         },
        {"four bytes give one question mark", "a\xf0\x9f\x98\x80z",              L"a?z"                          },
        {"four bytes of the largest lead",    "\xf7\xbf\xbf\xbf\xf8\x88",        L"?\xf8\x88"                    },
        {"Latin-1 before a blank",            "\xe9 ",                           L"\u00e9 "                      },
        {"lead before a sequence",            "\xc3\xc3\xa9",                    L"\xc3\xe9"                     },
        {"three bytes cut by a blank",        "\xe2\x82 ",                       L"\xe2\x82 "                    },
        {"overlong letter",                   "\xc1\x81",                        L"A"                            },
        {"overlong NUL is a character",       "a\xc0\x80z",                      L"a\0z"s                        },
        {"sequence across sixteen bytes",     "123456789012345\xc3\xa9-8901234", L"123456789012345\u00e9-8901234"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        // Exactly as many bytes as there are, so that a look behind them is a fault.
        const std::vector<char> exact(row.Bytes.begin(), row.Bytes.end());
        ZVString text(L"old");
        text.SetFromUTF8(exact.data(), static_cast<int32_t>(exact.size()));
        EXPECT_EQ(TextOf(text), row.Expected);
        EXPECT_EQ(TextOf(ZVString::FromUTF8(row.Bytes.c_str())), row.Expected);
        text = FromNarrow(row.Bytes.c_str(), -1);
        text.ReinterpretAsUTF8();
        EXPECT_EQ(TextOf(text), row.Expected);
    }
    ZVString wide(L"\x1c3\x2a9");
    wide.ReinterpretAsUTF8();
    EXPECT_EQ(TextOf(wide), L"\u00e9");
}

TEST(ZVStringConvert, DecodeUTF8WithACount)
{
    const EmptyPool pool;
    const auto decoded = [](const char* bytes, int32_t count)
    {
        ZVString text;
        text.SetFromUTF8(bytes, count);
        EXPECT_EQ(text.GetCapacity(), text.GetLength() + 1);
        return text;
    };
    ExpectTexts({
        {"limit inside a sequence", decoded("\xe2\x82\xac", 2), L"\xe2\x82"},
        {"NUL before the limit",    decoded("a\0bc", 4),        L"a"       },
        {"null",                    decoded(nullptr, 3),        L""        },
    });
}

// Room for 31 characters, then for 260, then for just what is left.
TEST(ZVStringConvert, BuffersOfTheUncountedDecode)
{
    const auto expectCapacity = [](size_t length, int32_t capacity)
    {
        for (const std::string letter : {"a", "\xc3\xa9", "\xf0\x9f\x98\x80"})
        {
            std::string bytes;
            for (size_t count = 0; count < length; ++count)
                bytes += letter;
            const EmptyPool pool;
            const ZVString text = ZVString::FromUTF8(bytes.c_str());
            EXPECT_EQ(text.GetCapacity(), capacity) << length << " of " << letter;
            EXPECT_EQ(TextOf(text), std::wstring(length, letter.size() == 1 ? L'a' : letter.size() == 2 ? L'\u00e9' : L'?'));
        }
    };
    expectCapacity(31, 32);
    expectCapacity(32, 261);
    expectCapacity(260, 261);
    expectCapacity(261, 262);
    expectCapacity(1000, 1001);
}

// Reads the units as UTF-16 and as UTF-32. 0x6100 stands for a swapped "a" in either width.
ZVString FromUnits(std::vector<uint32_t> units, int32_t count, bool honourMark, bool swapped)
{
    const std::vector<uint16_t> narrowUnits(units.begin(), units.end());
    std::replace(units.begin(), units.end(), 0x6100u, 0x61000000u);
    ZVString text(L"old"), wideText(L"old");
    text.SetFromUTF16(narrowUnits.data(), count, honourMark, swapped);
    wideText.SetFromUTF32(units.data(), count, honourMark, swapped);
    EXPECT_EQ(TextOf(wideText), TextOf(text));
    return text;
}

TEST(ZVStringConvert, Units)
{
    constexpr bool Honour = true, Swap = true;
    ExpectTexts({
        {"measured up to a zero unit",  FromUnits({'a', 'b', 0, 'c'}, -1, Honour, !Swap), L"ab"                        },
        {"count",                       FromUnits({'a', 'b', 'c'}, 2, !Honour, !Swap),    L"ab"                        },
        {"count below -1",              FromUnits({'a', 0}, -2, Honour, !Swap),           L""                          },
        {"mark against the flag",       FromUnits({0xfeff, 'a'}, 2, Honour, Swap),        L"a"                         },
        {"swapped mark",                FromUnits({0xfffe, 0x6100}, 2, Honour, !Swap),    L"a"                         },
        {"mark that is not honoured",   FromUnits({0xfeff, '-'}, 2, !Honour, !Swap),      L"\xfeff-"                   },
        {"swapped on request",          FromUnits({0x6100}, 1, !Honour, Swap),            L"a"                         },
        {"surrogates are not combined", FromUnits({0xd83d, 0xde00}, 2, Honour, !Swap),    std::wstring {0xd83d, 0xde00}},
    });
}

TEST(ZVStringConvert, DetectEncoding)
{
    const auto detected = [](const std::string& bytes)
    {
        const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
        return static_cast<int32_t>(ZVString::DetectEncoding(exact.data(), static_cast<int32_t>(exact.size())));
    };
    constexpr int32_t Narrow = 1, UTF8 = 2, UTF16 = 3, UTF8WithMark = 5, UTF32 = 6;
    ExpectNumbers({
        {"big-endian mark",                       detected("\xfe\xff"s),            UTF16       },
        {"mark before zero bytes",                detected("\xff\xfe\0\0a\0\0\0"s), UTF16       },
        {"UTF-8 mark",                            detected("\xef\xbb\xbf"s),        UTF8WithMark},
        {"zero bytes only",                       detected("\0\0\0"s),              Narrow      },
        {"valid sequence",                        detected("a\xf0\x9f\x98\x80"s),   UTF8        },
        {"valid and invalid sequence",            detected("\xc3\xa9\xe9"s),        Narrow      },
        {"two zero bytes on the way",             detected("\xc3\xa9\0\0b"s),       UTF16       },
        {"three zero bytes on the way",           detected("a\0\0\0b\0\0\0"s),      UTF32       },
        {"trailing zero bytes behind a sequence", detected("\xc3\xa9\0\0\0"s),      UTF8        },
        {"sequence cut by trailing zero bytes",   detected("\xc3\xa9\xc3\0\0"s),    Narrow      },
    });
}

ZVString FromBytes(ZVEncoding encoding, const std::string& bytes, bool dropNulBytes = false)
{
    ZVBuffer buffer;
    buffer.Append(bytes.data(), static_cast<int64_t>(bytes.size()));
    ZVString text(L"old");
    text.SetFromBytes(buffer, encoding, dropNulBytes);
    EXPECT_EQ(buffer.GetUsed(), static_cast<int64_t>(bytes.size()));
    return text;
}

TEST(ZVStringConvert, SetFromBytes)
{
    using enum ZVEncoding;
    ExpectTexts({
        {"narrow ends at a zero",       FromBytes(Narrow, "\xc3\xa9\0a"s),          L"\xc3\xa9"},
        {"narrow without its zeros",    FromBytes(Narrow, "\0ab\0\0cd\0"s, true),   L"abcd"    },
        {"UTF-8 joined by its zeros",   FromBytes(UTF8, "\xc3\0\xa9"s, true),       L"\u00e9"  },
        {"UTF-8 whose mark is text",    FromBytes(UTF8, "\xef\xbb\xbf-"s),          L"\xfeff-" },
        {"UTF-8 with a mark",           FromBytes(UTF8WithMark, "\xef\xbb\xbf-"s),  L"-"       },
        {"UTF-16 with a swapped mark",  FromBytes(UTF16, "\xfe\xff\0-"s),           L"-"       },
        {"UTF-16 with a byte too many", FromBytes(UTF16, "a\0b"s),                  L"a"       },
        {"UTF-16 without its zeros",    FromBytes(UTF16, "a\0\0\0\0\1\0\0"s, true), L"a\u0100" },
        {"UTF-32 with a mark",          FromBytes(UTF32, "\xff\xfe\0\0-\0\0\0"s),   L"-"       },
        {"detected UTF-16",             FromBytes(Detect, "a\0b\0"s),               L"ab"      },
    });
}
}
