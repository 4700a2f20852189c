#include "siblings/tools/text/CStringTools.h"

#include "core/string/ZVStringUTF8.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
TEST(CStringTools, FindsInTimeThatGrowsWithTheText)
{
    CStringTools tools;
    constexpr int32_t Exact = 0;
    constexpr int32_t Folded = IZVStringTools::FindFolded;
    EXPECT_EQ(tools.Find(L"The FILM.mkv", L"film", Folded), 4);
    EXPECT_EQ(tools.Find(L"aaab", L"aab", Exact), 1) << "a start that fails contains the right one";
    EXPECT_EQ(tools.Find(L"aabaabaaab", L"aabaaab", Exact), 3) << "a border of a border";

    // Trying each position on its own would take 10^11 steps here.
    const std::wstring text = std::wstring(1'000'000, L'a') + std::wstring(100'000, L'A') + L"b";
    const std::wstring needle = std::wstring(100'000, L'a') + L"B";
    EXPECT_EQ(tools.Find(text.c_str(), needle.c_str(), Folded), 1'000'000);
    EXPECT_EQ(tools.Find(text.c_str(), (needle + L"c").c_str(), Folded), -1);
}

TEST(CStringTools, OrdersNaturally)
{
    CStringTools tools;
    // clang-format off
    constexpr const wchar_t* InOrder[] = {
        L"", L"0", L"00", L"1", L"01", L"1-01", L"01-1", L"2a", L"2b", L"9", L"010", L"9999999999999999999998",
        L"9999999999999999999999", L"10000000000000000000000", L"a b", L"a1", L"B1", L"b1", L"b01", L"Film", L"film", L"Part",
        L"Part 2",
    };
    // clang-format on
    for (const wchar_t* const& a : InOrder)
        for (const wchar_t* const& b : InOrder)
        {
            const int32_t order = &a < &b ? -1 : &a > &b ? 1 : 0;
            EXPECT_EQ(tools.Compare(a, b, 0, false, -1), order) << ZVStringUTF8(a) << " " << ZVStringUTF8(b);
            EXPECT_EQ(tools.Compare(a, b, 0, true, -1), -order);
        }
    constexpr int32_t Plain = IZVStringTools::CompareWithoutTieBreaks;
    EXPECT_EQ(tools.Compare(L"Film 02-1", L"film 2-01", Plain, false, -1), 0);
    // A length limits both texts, even inside a number.
    EXPECT_EQ(tools.Compare(L"a2", L"a10", 0, false, 2), 1);
}

TEST(CStringTools, MatchesWildcards)
{
    CStringTools tools;
    EXPECT_TRUE(tools.MatchesWildcards(L"Film.MKV", L"f*ilm.mkv*"));
    EXPECT_FALSE(tools.MatchesWildcards(L"abcabd", L"*abc*abc*"));
    EXPECT_TRUE(tools.MatchesWildcards(L"\u00c4b", L"?b"));
    EXPECT_TRUE(tools.MatchesWildcards(L"", L"**"));
    EXPECT_FALSE(tools.MatchesWildcards(std::wstring(100'000, L'a').c_str(), L"*a*a*a*a*a*a*b")) << "or it takes very long";
    EXPECT_TRUE(tools.HasWildcards(L"a*"));
    EXPECT_FALSE(tools.HasWildcards(L"[a].mkv"));
}
}
