#include "core/string/StringProbe.h"

#include <climits>
#include <cmath>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringNumber, WholeNumbersAndTruth)
{
    ExpectRows<const wchar_t*, bool>({
        {L"2", true}, {L"YES", true}, {L"True", true}, {L"0.5", true}, {L"", false}, {L"0", false}, {L"0.0", false},
        {L"y", false}, {L"true ", false}, {L"-1", false}, {L" 1", false},
    }, [](const wchar_t* text) { return S(text).ToBool(); });
    ExpectRows<const wchar_t*, int32_t>({
        {L" \t\r\n\v\f-12abc", -12}, {L"+00000000000012-3", 12}, {L"+-5", 0},
        {L"2147483647", INT_MAX}, {L"2147483648", INT_MAX}, {L"99999999999", INT_MAX},
        {L"-2147483648", -INT_MAX},
        // Digits of the first script and the last, what stands around them, and a script that is not in the table.
        {L"1\u0660\u0669\u066a", 109}, {L"1\uff10\uff19\uff1a", 109}, {L"1\u065f", 1}, {L"1\uff0f", 1}, {L"1\u17e5", 1},
    }, [](const wchar_t* text) { return S(text).ToInt(); });
    ExpectNumbers({
        {S(L"4294967295").ToUInt(), UINT32_MAX}, {S(L"9223372036854775807").ToInt64(), INT64_MAX},
        {S(L"-9223372036854775808").ToInt64(), -INT64_MAX}, {S(L" 0xfFg").ToUInt64FromHex(), 255},
    });
    EXPECT_EQ(S(L"18446744073709551616").ToUInt64(), UINT64_MAX);
    EXPECT_EQ(S(L"10000000000000000").ToUInt64FromHex(), UINT64_MAX);
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
        {read(L"1,234.5", !AnyPoint, !Exponent), L"1234.5 7"}, {read(L"1,25.5", AnyPoint, !Exponent), L"1.25 4"},
        {read(L"1.5,2", !AnyPoint, !Exponent), L"1.5 3"}, {read(L"  +12.0625x", !AnyPoint, !Exponent), L"12.0625 10"},
        {read(L"+-3.", !AnyPoint, !Exponent), L"-3 4"}, {read(L"\u2012.5", !AnyPoint, !Exponent), L"-0.5 3"},  // figure dash
        {read(L"\t3", !AnyPoint, !Exponent), L"0 0"}, {read(L"12345", !AnyPoint, !Exponent, -1), L"0 0"},
        {read(L"1e3", !AnyPoint, !Exponent), L"1 1"}, {read(L"25E-2x", !AnyPoint, Exponent), L"0.25 5"},
        {read(L"1e34", !AnyPoint, Exponent, 3), L"1000 3"},
    });
    // More digits than 64 bits hold, and powers of ten beyond a double's range of numbers within it.
    const std::wstring zeros(400, L'0');
    const std::pair<std::wstring, double> rows[] = {
        {L"100000000000000000000000", 1e23}, {L"0.3333333333333333333333333", 1.0 / 3.0}, {L"1" + zeros + L"e-399", 10.0},
        {L"0." + zeros + L"25e402", 25.0}, {L"1" + zeros, INFINITY}, {L"1e-999999", 0.0}, {L"0e" + zeros + L"9", 0.0},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_DOUBLE_EQ(S(text.c_str()).ToDouble(nullptr, false, INT_MAX, true), expected);
}

TEST(ZVStringNumber, FromInt)
{
    constexpr uint32_t Lower = 1, Plus = 2, Prefix = 4, Groups = 8, Ordinal = 16, Blanks = 32;
    ExpectTexts({
        {S::FromInt(0, 3, 10, Blanks), L"  0"}, {S::FromInt(5, 0, 10, Plus), L"+5"}, {S::FromInt(0, 0, 10, Plus), L"0"},
        {S::FromInt(255, 4, 16, Lower | Prefix), L"0x00ff"},
        {S::FromInt(-35 * 36, 0, 36), L"-Z0"}, {S::FromInt(5, 0, 37), L""}, {S::FromUInt(5, 0, 17), L""},
        {S::FromUInt(UINT64_MAX, 0, 2), std::wstring(64, L'1')}, {S::FromIPAddress(0x7f0000ff), L"127.0.0.255"},
        {S::FromInt(1234567, 0, 10, Groups), L"1,234,567"}, {S::FromInt(-123, 0, 10, Groups), L"-123"},
        {S::FromInt(1000, 0, 10, Groups), L"1,000"}, {S::FromInt(1013, 0, 10, Ordinal | Groups), L"1,013th"},
        {S::FromInt(1, 0, 10, Ordinal), L"1st"}, {S::FromInt(22, 0, 10, Ordinal), L"22nd"},
        {S::FromInt(103, 0, 10, Ordinal), L"103rd"}, {S::FromInt(11, 0, 10, Ordinal), L"11th"},
    });
}

TEST(ZVStringNumber, FromDouble)
{
    constexpr uint32_t Plus = 2, DropZero = 4;
    ExpectTexts({
        {S::FromDouble(2.0, 2, true), L"2.00"}, {S::FromDouble(-0.125, 2), L"-0.13"}, {S::FromDouble(1.0625, 3), L"1.063"},
        {S::FromDouble(0.03125, 1), L"0"}, {S::FromDouble(9.96875, 1, true), L"10.0"}, {S::FromDouble(-2.5, 0, true), L"-3"},
        {S::FromDouble(0.5, 20, true), L"0.5000000000000000"}, {S::FromDouble(1.5, -1, false, 3), L"001.5"},
        {S::FromDouble(0.0, -1, false, 0, Plus), L"+0"}, {S::FromDouble(-0.5, -1, false, 0, DropZero), L"-.5"},
        {S::FromDouble(NAN), L"?"},
    });
}
}
