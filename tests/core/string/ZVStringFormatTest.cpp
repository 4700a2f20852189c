#include "core/string/StringProbe.h"

#include <climits>
#include <cmath>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringFormat, Texts)
{
    ExpectTexts({
        {"width cuts",                    ZVFormat(L"%5s", L"abcdefg"),                          L"abcde"       },
        {"width 0",                       ZVFormat(L"%0s|", L"ab"),                              L"|"           },
        {"width does not pad",            ZVFormat(L"%5s|", L"ab"),                              L"ab|"         },
        {"precision is ignored",          ZVFormat(L"%.1S", L"ab"),                              L"ab"          },
        {"UTF-8 cut to characters",       ZVFormat(L"%2s", "\xe2\x82\xac\xc3\xa9z"),             L"\u20ac\u00e9"},
        {"string object",                 ZVFormat(L"%2s", ZVString(L"abc")),                    L"ab"          },
        {"null",                          ZVFormat(L"%s", static_cast<const wchar_t*>(nullptr)), L"(null)"      },
        {"null bytes",                    ZVFormat(L"%s", static_cast<const char*>(nullptr)),    L"(null)"      },
        {"number is no text but used up", ZVFormat(L"[%s|%d]", 5, 6),                            L"[|6]"        },
    });
}

TEST(ZVStringFormat, Numbers)
{
    constexpr int64_t HighOnes = static_cast<int64_t>(0xffffffff00000001);
    ExpectTexts({
        {"unsigned of both widths",       ZVFormat(L"%u %u", UINT32_MAX, -1), L"4294967295 18446744073709551615"},
        {"width",                         ZVFormat(L"%03d %3d", 7, -7), L"007 -007"},
        {"blank",                         ZVFormat(L"% 3d% .2d", 7, 7), L"  7 7"},
        {"width before precision",        ZVFormat(L"%.3u %2.5d", 7, 7), L"007 07"},
        {"hexadecimal",                   ZVFormat(L"%x %X", 0xab, 0xab), L"ab AB"},
        {"32-bit -1",                     ZVFormat(L"%x %8X", -1, -1), L"ffffffff FFFFFFFF"},
        {"-1 in nine digits",             ZVFormat(L"%9x", -1), L"ffffffffffffffff"},
        {"high half of ones",             ZVFormat(L"%x", HighOnes), L"1"},
        {"high half that is no sign",     ZVFormat(L"%x", INT64_MAX), L"7fffffffffffffff"},
        {"prefix and eight digits",       ZVFormat(L"%2h %h %10h", 0xab, -1, 0xab), L"0x000000AB 0xFFFFFFFF 0x00000000AB"},
        {"pointer",                       ZVFormat(L"%p %p", 0xab, -1), L"00000000000000AB FFFFFFFFFFFFFFFF"},
        {"characters",                    ZVFormat(L"%c%c%c", L'a', true, 0xffff), L"a\x1\xffff"},
        {"no characters but used up",     ZVFormat(L"[%c%c%c|%d]", 0, 0x10000, -1, 5), L"[|5]"},
        {"text is no number but used up", ZVFormat(L"%d,%d", ZVString(L"x"), 2), L"0,2"},
        {"more than the room",            ZVFormat(L"%99999999999d|", 7), std::wstring(31, L'0') + L"?|"},
        {"double of fixed decimals",      ZVFormat(L"%.3f %.f", 1.5, 2.5), L"1.500 3"},
        {"width counts whole digits",     ZVFormat(L"%3.1f", 1.25), L"001.3"},
        {"integer is no double",          ZVFormat(L"%f|%d|%f", 0x3ff8000000000000, 1.5, 2.0), L"0|0|2"},
    });
}

TEST(ZVStringFormat, SizesAndOtherCharacters)
{
    ExpectTexts({
        {"percent signs",             ZVFormat(L"%%%5%% %|%d", 7),                    L"%%%|7"         },
        {"percent sign at the end",   ZVFormat(L"100%"),                              L"100"           },
        {"conversion cut by the end", ZVFormat(L"a% 5.3", 7),                         L"a"             },
        {"64 bits",                   ZVFormat(L"%03I64d %I64u", 7, UINT32_MAX),      L"007 4294967295"},
        {"other I",                   ZVFormat(L"%I64x %I32d %I6", 7),                L"I64x I32d I6"  },
        {"long",                      ZVFormat(L"%ld %lu %lx %ls", 1, 2, 0xab, L"t"), L"1 2 ab t"      },
        {"other long",                ZVFormat(L"%lX %lld %l", 7),                    L"lX lld l"      },
        {"too few arguments",         ZVFormat(L"%d|%s|%c|%f|%x"),                    L"0|||0|0"       },
    });
    const ZVString twenty =
        ZVFormat(L"%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2);
    EXPECT_EQ(TextOf(twenty), L"12345678912345678912");
    // Records as another library passes them: an unused place, and one that is not there.
    const ZVFormatRecord unused, seven {ZVFormatCode::Integer, 7};
    const ZVFormatRecord* const records[] = {&unused, nullptr, &seven};
    ZVString text(L"old");
    text.FormatList(L"%d|%s|%d|%d", records, 3);
    text.AppendFormatList(L"-%f", records, 3);
    EXPECT_EQ(TextOf(text), L"0||7|0-0");
}

// Long enough for a new block at every step, so that a reference into the old one is a fault.
TEST(ZVStringFormat, TheStringItselfAsArgument)
{
    const std::wstring letters(2000, L'x');
    ZVString text(letters.c_str());
    text.AppendFormat(L"-%s", text);
    text.AppendFormat(L"-%s", text.GetText() + 3999);
    EXPECT_EQ(TextOf(text), letters + L"-" + letters + L"-xx");
    text.Format(L"%3s%s|%2s", text, L"abc", text);
    EXPECT_EQ(TextOf(text), L"xxxabc|xx");
    text = (letters + L"%d").c_str();
    text.AppendFormat(text, 5);
    EXPECT_EQ(TextOf(text), letters + L"%d" + letters + L"5");
    text.Format(text.GetText() + 2000, 5);
    EXPECT_EQ(TextOf(text), L"5" + letters + L"5");
    const ZVString shared(text);
    text.AppendFormat(L"%s%s", shared, shared.GetText());
    EXPECT_EQ(TextOf(text), TextOf(shared) + TextOf(shared) + TextOf(shared));
}
}
