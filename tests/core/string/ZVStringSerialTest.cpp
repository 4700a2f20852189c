#include "core/string/StringProbe.h"
#include "core/string/ZVStringLeadingCharacters.h"

#include <climits>

// The cases stand in columns.
// clang-format off

namespace
{
using S = ZVString;

TEST(ZVStringSerial, EditDistance)
{
    ExpectNumbers({
        {"edits of each kind",             S(L"kitten").GetEditDistance(L"sitting"),     3      },
        {"case folded",                    S(L"ABC").GetEditDistance(L"abc"),            0      },
        {"against nothing",                S(L"abc").GetEditDistance(nullptr),           3      },
        {"lengths above the limit",        S(L"abc").GetEditDistance(L"abcdef", 2),      INT_MAX},
        {"shorter by more than the limit", S(L"abcdef").GetEditDistance(L"abc", 2),      INT_MAX},
        {"distance at the limit",          S(L"abcd").GetEditDistance(L"wxyz", 4),       4      },
        {"distance above the limit",       S(L"abcd").GetEditDistance(L"wxyz", 3),       INT_MAX},
        {"bad start is made good",         S(L"xabcdef").GetEditDistance(L"abcdefx", 2), 2      },
    });
    // The length of a locked string is not kept up, and a NUL may stand before it.
    ZVString locked(std::wstring(5000, L'a').c_str());
    locked.GetBuffer(-1)[2] = L'\0';
    EXPECT_EQ(locked.GetEditDistance(L"ab"), 1);
}

TEST(ZVStringSerial, IsSimilar)
{
    ExpectNumbers({
        {"four allow one",      S(L"abcd").IsSimilar(L"abce"),                                 true },
        {"but not two",         S(L"abcd").IsSimilar(L"abce1"),                                false},
        {"fifteen allow three", S(L"abcdefghijklmno").IsSimilar(L"abcdefghijklxxx"),           true },
        {"twenty allow three",  S(L"abcdefghijklmnopqrst").IsSimilar(L"abcdefghijklmnopqxxx"), true },
        {"and no more",         S(L"abcdefghijklmnopqrst").IsSimilar(L"abcdefghijklmnopxxxx"), false},
    });
}

TEST(ZVStringSerial, LengthPrefixedForm)
{
    const EmptyPool pool;
    ZVString text;
    text.AppendLengthPrefixed(S(L"abc"));
    text.AppendLengthPrefixed(42);
    text.AppendLengthPrefixed(S());
    text.AppendLengthPrefixed(S(L"(1:)"));
    EXPECT_EQ(TextOf(text), L"(3:abc)(2:42)(0:)(4:(1:))");
    EXPECT_EQ(text.GetCapacity(), 1025);
    int32_t position = 0;
    ZVString value;
    EXPECT_TRUE(text.ReadLengthPrefixed(position, value));
    EXPECT_EQ(TextOf(value), L"abc");
    EXPECT_EQ(text.ReadLengthPrefixedInt(position), 42);
    EXPECT_TRUE(text.ReadLengthPrefixed(position, value));
    EXPECT_EQ(TextOf(value), L"");
    EXPECT_TRUE(text.ReadLengthPrefixed(position, value));
    EXPECT_EQ(TextOf(value), L"(1:)");
    EXPECT_EQ(position, text.GetLength());

    ZVString itself(L"ab");
    itself.AppendLengthPrefixed(itself);
    EXPECT_EQ(TextOf(itself), L"ab(2:ab)");
    ZVString large;
    large.AppendLengthPrefixed(S(std::wstring(1020, L'x').c_str()));
    EXPECT_EQ(large.GetCapacity(), 2049);
}

TEST(ZVStringSerial, ReadingWhatIsNoLengthPrefixedText)
{
    const auto expectFailure = [](const wchar_t* text, int32_t start = 0)
    {
        SCOPED_TRACE(testing::PrintToString(text));
        int32_t position = start;
        ZVString value(L"old");
        EXPECT_FALSE(S(text).ReadLengthPrefixed(position, value));
        EXPECT_EQ(S(text).ReadLengthPrefixedInt(position, 5), 5);
        EXPECT_EQ(position, start);
        EXPECT_EQ(TextOf(value), L"old");
    };
    for (const wchar_t* text : {L"", L"3:abc)", L"(3abc)", L"(-1:abc)", L"(", L"(3", L"(3:", L"(4:abc)", L"(2:abc)", L"(3:abc",
                                L"(4294967299:abc)", L"(18446744073709551619:abc)"})
        expectFailure(text);
    for (const int32_t position : {-1, 1, 7, INT_MAX})
        expectFailure(L"(3:abc)", position);
    for (const wchar_t* text : {L"(3:abc)", L"(0:", L"(99:x"})
        EXPECT_TRUE(S(text).IsLengthPrefixed()) << testing::PrintToString(text);
    for (const wchar_t* text : {L"", L"3:abc)", L"(:abc)", L"(3", L"(3abc)", L"(-1:a)"})
        EXPECT_FALSE(S(text).IsLengthPrefixed()) << testing::PrintToString(text);
}

TEST(ZVStringSerial, QuotesAndLeadingCharacters)
{
    const ZVStringLeadingAlphaCharacters letters;
    const ZVStringLeadingWordCharacters word;
    ExpectTexts({
        {"quoted quotes",   S(L"'it's").QuoteForShell(), L"''\\''it'\\''s'"},
        {"letters",         letters.Get(L"abC1_d-e"),    L"abC"            },
        {"word characters", word.Get(L"abC1_d-e"),       L"abC1_d"         },
    });
}
}
