#include "core/string/StringProbe.h"

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringFormat, Conversions)
{
    constexpr int64_t HighOnes = static_cast<int64_t>(0xffffffff00000001);
    ExpectTexts({
        {ZVFormat(L"%5s", L"abcdefg"), L"abcde"}, {ZVFormat(L"%0s|%5s|", L"ab", L"ab"), L"|ab|"},
        {ZVFormat(L"%2s%.1S", S(L"abc"), L"ab"), L"abab"},  // precision is ignored
        {ZVFormat(L"%2s", "\xe2\x82\xac\xc3\xa9z"), L"\u20ac\u00e9"},
        {ZVFormat(L"%s%s", static_cast<const wchar_t*>(nullptr), static_cast<const char*>(nullptr)), L"(null)(null)"},
        {ZVFormat(L"[%s|%d]", 5, 6), L"[|6]"},  // a number is no text, but used up
        {ZVFormat(L"%u %u", UINT32_MAX, -1), L"4294967295 18446744073709551615"},
        {ZVFormat(L"%.3u %3d% 3d% .2d %2.5d", 7, -7, 7, 7, 7), L"007 -007  7 7 07"},  // the width goes before the precision
        {ZVFormat(L"%x %X %x %8X %9x", 0xab, 0xab, -1, -1, -1), L"ab AB ffffffff FFFFFFFF ffffffffffffffff"},
        {ZVFormat(L"%x %x", HighOnes, INT64_MAX), L"1 7fffffffffffffff"},
        {ZVFormat(L"%2h %h %10h", 0xab, -1, 0xab), L"0x000000AB 0xFFFFFFFF 0x00000000AB"},
        {ZVFormat(L"%p %p", 0xab, -1), L"00000000000000AB FFFFFFFFFFFFFFFF"},
        {ZVFormat(L"%c%c%c%c%c|%d", true, 0xffff, 0, 0x10000, -1, 5), L"\x1\xffff|5"},
        {ZVFormat(L"%99999999999d|", 7), std::wstring(31, L'0') + L"?|"},  // more than the room
        {ZVFormat(L"%.3f %.f %3.1f", 1.5, 2.5, 1.25), L"1.500 3 001.3"},
        {ZVFormat(L"%f|%d|%f", 0x3ff8000000000000, 1.5, 2.0), L"0|0|2"},
        {ZVFormat(L"%%%5%% %|%d", 7), L"%%%|7"}, {ZVFormat(L"a% 5.3", 7), L"a"},
        {ZVFormat(L"%03I64d %I64u", 7, UINT32_MAX), L"007 4294967295"}, {ZVFormat(L"%I64x %I32d %I6", 7), L"I64x I32d I6"},
        {ZVFormat(L"%ld %lu %lx %ls", 1, 2, 0xab, L"t"), L"1 2 ab t"}, {ZVFormat(L"%lX %lld %l", 7), L"lX lld l"},
        {ZVFormat(L"%d|%s|%c|%f|%x"), L"0|||0|0"},
    });
    // Records as another library passes them: an unused place, and one that is not there.
    const ZVFormatRecord unused, seven {ZVFormatCode::Integer, 7};
    const ZVFormatRecord* const records[] = {&unused, nullptr, &seven};
    S text(L"old");
    text.FormatList(L"%d|%s|%d|%d", records, 3);
    text.AppendFormatList(L"-%f", records, 3);
    EXPECT_EQ(TextOf(text), L"0||7|0-0");
}

// Long enough for a new block at every step, so that a reference into the old one is a fault.
TEST(ZVStringFormat, TheStringItselfAsArgument)
{
    const std::wstring letters(2000, L'x');
    S text(letters.c_str());
    text.AppendFormat(L"-%s", text);
    text.AppendFormat(L"-%s", text.GetText() + 3999);
    EXPECT_EQ(TextOf(text), letters + L"-" + letters + L"-xx");
    text.Format(L"%3s%s|%2s", text, L"abc", text);
    EXPECT_EQ(TextOf(text), L"xxxabc|xx");
    text = (letters + L"%d").c_str();
    text.AppendFormat(text, 5);
    text.Format(text.GetText() + 2000, 5);
    EXPECT_EQ(TextOf(text), L"5" + letters + L"5");
}
}
