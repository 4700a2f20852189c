#include "core/string/StringProbe.h"
#include "core/string/ZVNumberText.h"

#include <climits>
#include <cmath>

// The cases stand in columns.
// clang-format off

namespace
{
using S = ZVString;

TEST(ZVStringNumber, ToInt)
{
    ExpectNumbers({
        {"white space, sign, rest",         S(L" \t\r\n\v\f-12abc").ToInt(),      -12       },
        {"plus and leading zeros",          S(L"+00000000000012-3").ToInt(),      12        },
        {"sign alone",                      S(L"-").ToInt(),                      0         },
        {"two signs",                       S(L"+-5").ToInt(),                    0         },
        {"the limit's ten",                 S(L"2147483640").ToInt(),             2147483640},
        {"limit",                           S(L"2147483647").ToInt(),             INT_MAX   },
        {"one above the limit",             S(L"2147483648").ToInt(),             INT_MAX   },
        {"far above the limit",             S(L"99999999999").ToInt(),            INT_MAX   },
        {"lowest value is cut too",         S(L"-2147483648").ToInt(),            -INT_MAX  },
        {"script that is not in the table", S(L"1\u17e5").ToInt(),                1         },
        {"unsigned limit",                  S(L"4294967295").ToUInt(),            UINT32_MAX},
        {"64 bits, limit",                  S(L"9223372036854775807").ToInt64(),  INT64_MAX },
        {"64 bits, lowest value",           S(L"-9223372036854775808").ToInt64(), -INT64_MAX},
    });
    EXPECT_EQ(S(L"18446744073709551614").ToUInt64(), UINT64_MAX - 1);
    EXPECT_EQ(S(L"18446744073709551616").ToUInt64(), UINT64_MAX);
    EXPECT_EQ(S(L" 0xfFg").ToUInt64FromHex(), 255u);
    EXPECT_EQ(S(L"10000000000000000").ToUInt64FromHex(), UINT64_MAX);
}

// The digit five of Arabic-Indic, Extended Arabic-Indic, Devanagari, Bengali, Gurmukhi, Gujarati, Oriya, Telugu, Kannada,
// Malayalam, Thai, Lao, Tibetan and full width, with the ten around it and one more on both sides.
TEST(ZVStringNumber, DigitsOfAllScripts)
{
    for (const wchar_t five : L"\u0665\u06f5\u096b\u09eb\u0a6b\u0aeb\u0b6b\u0c6b\u0ceb\u0d6b\u0e55\u0ed5\u0f25\uff15")
    {
        SCOPED_TRACE(testing::PrintToString(five));
        for (int digit = -1; digit <= 10 && five != L'\0'; ++digit)
            EXPECT_EQ(S(std::wstring {L'1', five + digit - 5}.c_str()).ToInt(), digit < 0 || digit > 9 ? 1 : 10 + digit);
    }
}

TEST(ZVStringNumber, ToDouble)
{
    constexpr bool AnyPoint = true, Exponent = true;
    // The number, and how many characters were read.
    const auto read = [](const wchar_t* text, bool anyDecimalPoint, bool allowExponent, int32_t maxLength = INT_MAX)
    {
        int32_t consumed = -1;
        const double value = S(text).ToDouble(&consumed, anyDecimalPoint, maxLength, allowExponent);
        return ZVFormat(L"%f %d", value, consumed);
    };
    ExpectTexts({
        {"group separator",              read(L"1,234.5", !AnyPoint, !Exponent),     L"1234.5 7"  },
        {"any decimal point",            read(L"1,25.5", AnyPoint, !Exponent),       L"1.25 4"    },
        {"separator behind the point",   read(L"1.5,2", !AnyPoint, !Exponent),       L"1.5 3"     },
        {"front and rest",               read(L"  +12.0625x", !AnyPoint, !Exponent), L"12.0625 10"},
        {"plus and minus",               read(L"+-3.", !AnyPoint, !Exponent),        L"-3 4"      },
        {"figure dash",                  read(L"\u2012.5", !AnyPoint, !Exponent),    L"-0.5 3"    },
        {"tab in front",                 read(L"\t3", !AnyPoint, !Exponent),         L"0 0"       },
        {"exponent that is not allowed", read(L"1e3", !AnyPoint, !Exponent),         L"1 1"       },
        {"exponent",                     read(L"25E-2x", !AnyPoint, Exponent),       L"0.25 5"    },
        {"huge exponent of nothing",     read(L"0e999999999", !AnyPoint, Exponent),  L"0 11"      },
        {"length inside the exponent",   read(L"1e34", !AnyPoint, Exponent, 3),      L"1000 3"    },
        {"negative length",              read(L"12345", !AnyPoint, !Exponent, -1),   L"0 0"       },
    });
    // More digits than 64 bits hold.
    EXPECT_DOUBLE_EQ(S(L"100000000000000000000000").ToDouble(), 1e23);
    EXPECT_DOUBLE_EQ(S(L"0.3333333333333333333333333").ToDouble(), 1.0 / 3.0);
}

TEST(ZVStringNumber, ToBool)
{
    for (const wchar_t* text : {L"2", L"YES", L"True", L"10", L"0.5"})
        EXPECT_TRUE(S(text).ToBool()) << testing::PrintToString(text);
    for (const wchar_t* text : {L"", L"0", L"0.0", L"00", L"no", L"y", L"true ", L"-1", L" 1"})
        EXPECT_FALSE(S(text).ToBool()) << testing::PrintToString(text);
}

TEST(ZVStringNumber, FromInt)
{
    constexpr uint32_t Lower = 1, Plus = 2, Prefix = 4, Groups = 8, Ordinal = 16, Blanks = 32;
    ExpectTexts({
        {"last place is a digit",      S::FromInt(0, 3, 10, Blanks),              L"  0"                },
        {"plus",                       S::FromInt(5, 0, 10, Plus),                L"+5"                 },
        {"no plus at zero",            S::FromInt(0, 0, 10, Plus),                L"0"                  },
        {"prefix only in base 16",     S::FromInt(255, 0, 10, Prefix),            L"255"                },
        {"hexadecimal",                S::FromInt(255, 4, 16, Lower | Prefix),    L"0x00ff"             },
        {"base 36",                    S::FromInt(-35 * 36, 0, 36),               L"-Z0"                },
        {"base too large",             S::FromInt(5, 0, 37),                      L""                   },
        {"unsigned base too large",    S::FromUInt(5, 0, 17),                     L""                   },
        {"unsigned in base 2",         S::FromUInt(UINT64_MAX, 0, 2),             std::wstring(64, L'1')},
        {"groups",                     S::FromInt(1234567, 0, 10, Groups),        L"1,234,567"          },
        {"three digits are no groups", S::FromInt(-123, 0, 10, Groups),           L"-123"               },
        {"four digits are",            S::FromInt(1000, 0, 10, Groups),           L"1,000"              },
        {"first",                      S::FromInt(1, 0, 10, Ordinal),             L"1st"                },
        {"second",                     S::FromInt(22, 0, 10, Ordinal),            L"22nd"               },
        {"third",                      S::FromInt(103, 0, 10, Ordinal),           L"103rd"              },
        {"tenth",                      S::FromInt(10, 0, 10, Ordinal),            L"10th"               },
        {"eleventh",                   S::FromInt(11, 0, 10, Ordinal),            L"11th"               },
        {"thirteenth in groups",       S::FromInt(1013, 0, 10, Ordinal | Groups), L"1,013th"            },
        {"address",                    S::FromIPAddress(0x7f0000ff),              L"127.0.0.255"        },
    });
}

TEST(ZVStringNumber, RoomForANumber)
{
    const auto written = [](int32_t room, int64_t value, int32_t minimumDigits)
    {
        wchar_t target[] = L"################";
        const int32_t count = ZVNumberText::WriteSigned(target, room, value, minimumDigits, 10, 0);
        EXPECT_EQ(std::wstring(target + count), std::wstring(static_cast<size_t>(16 - count), L'#'));
        return S(target, count);
    };
    ExpectTexts({
        {"too little room",    written(7, 1, 0),         L""        },
        {"just enough",        written(8, 12345678, 0),  L"12345678"},
        {"one digit too many", written(8, -12345678, 0), L"-123456?"},
        {"endless zeros",      written(8, 1, INT_MAX),   L"0000000?"},
    });
}

TEST(ZVStringNumber, FromDouble)
{
    constexpr uint32_t Plus = 2, DropZero = 4;
    ExpectTexts({
        {"fixed decimals of a whole", S::FromDouble(2.0, 2, true),                 L"2.00"              },
        {"half goes away from zero",  S::FromDouble(-0.125, 2),                    L"-0.13"             },
        {"zero among the decimals",   S::FromDouble(1.0625, 3),                    L"1.063"             },
        {"rounded to nothing",        S::FromDouble(0.03125, 1),                   L"0"                 },
        {"carry",                     S::FromDouble(9.96875, 1, true),             L"10.0"              },
        {"carry of no decimals",      S::FromDouble(-2.5, 0, true),                L"-3"                },
        {"precision has a limit",     S::FromDouble(0.5, 20, true),                L"0.5000000000000000"},
        {"digits of the whole part",  S::FromDouble(1.5, -1, false, 3),            L"001.5"             },
        {"plus at zero",              S::FromDouble(0.0, -1, false, 0, Plus),      L"+0"                },
        {"zero dropped",              S::FromDouble(-0.5, -1, false, 0, DropZero), L"-.5"               },
        {"whole part stays",          S::FromDouble(1.5, -1, false, 0, DropZero),  L"1.5"               },
        {"no number",                 S::FromDouble(NAN),                          L"?"                 },
    });
    EXPECT_EQ(S::FromDouble(1.5, -1, false, INT_MAX).GetLength(), 191);
}
}
