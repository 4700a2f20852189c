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
}

TEST(ZVStringSerial, ReadingWhatIsNotLengthPrefixed)
{
    for (const wchar_t* text : {L"", L"(3abc)", L"(-1:abc)", L"(", L"(3", L"(3:", L"(4:abc)", L"(2:abc)", L"(3:abc",
                                L"(4294967299:abc)", L"(18446744073709551619:abc)", L"x(3:abc)"})
    {
        SCOPED_TRACE(testing::PrintToString(text));
        int32_t position = 0;
        EXPECT_EQ(S(text).ReadLengthPrefixedInt(position, 5), 5);
        EXPECT_EQ(position, 0);
    }
    EXPECT_TRUE(S(L"(99:x").IsLengthPrefixed());
}
}
