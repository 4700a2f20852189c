#include "core/string/StringProbe.h"
#include "core/string/ZVStringLeadingCharacters.h"

#include <climits>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringSerial, SimilarityQuotesAndLeadingCharacters)
{
    ExpectNumbers({
        {S(L"kitten").GetEditDistance(L"sitting"), 3}, {S(L"ABC").GetEditDistance(nullptr), 3},
        {S(L"ABC").GetEditDistance(L"abcdef", 2), INT_MAX}, {S(L"xabcdef").GetEditDistance(L"abcdefx", 2), 2},
        {S(L"abcd").GetEditDistance(L"wxyz", 4), 4}, {S(L"abcd").GetEditDistance(L"wxyz", 3), INT_MAX},
        // A quarter of the length may differ, and three at most.
        {S(L"abcd").IsSimilar(L"abce"), true}, {S(L"abcd").IsSimilar(L"abce1"), false},
        {S(L"abcdefghijklmnopqrst").IsSimilar(L"abcdefghijklmnopqxxx"), true},
        {S(L"abcdefghijklmnopqrst").IsSimilar(L"abcdefghijklmnopxxxx"), false},
    });
    ExpectTexts({
        {S(L"'it's").QuoteForShell(), L"''\\''it'\\''s'"}, {ZVStringLeadingAlphaCharacters().Get(L"abC1_d-e"), L"abC"},
        {ZVStringLeadingWordCharacters().Get(L"abC1_d-e"), L"abC1_d"},
    });
    // The length of a locked string is not kept up, and a NUL may stand before it.
    S locked(std::wstring(5000, L'a').c_str());
    locked.GetBuffer(-1)[2] = L'\0';
    EXPECT_EQ(locked.GetEditDistance(L"ab"), 1);
}

TEST(ZVStringSerial, LengthPrefixedForm)
{
    const EmptyPool pool;
    S text, value;
    int32_t position = 0, moves = 0;
    text.AppendLengthPrefixed(42);
    text.AppendLengthPrefixed(S());
    text.AppendLengthPrefixed(S(L"(1:)"));
    EXPECT_TRUE(TextOf(text) == L"(2:42)(0:)(4:(1:))" && text.GetCapacity() == 1025);
    EXPECT_TRUE(text.ReadLengthPrefixedInt(position) == 42 && text.ReadLengthPrefixed(position, value) && value == L"");
    EXPECT_TRUE(text.ReadLengthPrefixed(position, value) && value == L"(1:)" && position == text.GetLength());
    value.AppendLengthPrefixed(value);
    EXPECT_STREQ(value, L"(1:)(4:(1:))");
    S large;
    const S thousand(std::wstring(1020, L'x').c_str());
    while (large.GetLength() < 5000000)
    {
        const int32_t capacity = large.GetCapacity();
        large.AppendLengthPrefixed(thousand);
        moves += large.GetCapacity() != capacity ? 1 : 0;
    }
    EXPECT_LT(moves, 200) << "a large text is not copied for each thousand characters";
}

TEST(ZVStringSerial, ReadingWhatIsNoLengthPrefixedText)
{
    for (const wchar_t* text : {L"", L"(3abc)", L"(-1:abc)", L"(", L"(3", L"(3:", L"(4:abc)", L"(2:abc)", L"(3:abc",
                                L"(4294967299:abc)", L"(18446744073709551619:abc)", L"x(3:abc)"})
    {
        int32_t position = 0;
        S value(L"old");
        EXPECT_FALSE(S(text).ReadLengthPrefixed(position, value)) << text;
        EXPECT_TRUE(S(text).ReadLengthPrefixedInt(position, 5) == 5 && position == 0 && value == L"old") << text;
    }
    for (int32_t position : {-1, 1, 7, INT_MAX})
        EXPECT_EQ(S(L"(3:abc)").ReadLengthPrefixedInt(position, 5), 5);
    ExpectRows<const wchar_t*, bool>({{L"(99:x", true}, {L"3:abc)", false}, {L"(:abc)", false}, {L"(-1:a)", false}},
                                     [](const wchar_t* text) { return S(text).IsLengthPrefixed(); });
}
}
