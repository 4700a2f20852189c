#include "siblings/tools/text/CStringTools.h"

#include "core/string/ZVStringGlobals.h"
#include "core/string/ZVStringUTF8.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace
{
class CStringToolsTest : public testing::Test
{
protected:
    CStringToolsTest()
    {
        setlocale(LC_CTYPE, "C.UTF-8");
        ZVStringGlobals::Get().RebuildCharacterTables(false);
    }
    ~CStringToolsTest() override
    {
        setlocale(LC_CTYPE, "C");
        ZVStringGlobals::Get().RebuildCharacterTables(false);
    }

    CStringTools m_tools;
};

TEST_F(CStringToolsTest, FindsInTimeThatGrowsWithTheText)
{
    constexpr int32_t Exact = 0;
    constexpr int32_t Folded = IZVStringTools::FindFolded;
    EXPECT_EQ(m_tools.Find(L"The FILM.mkv", L"film", Folded), 4);
    EXPECT_EQ(m_tools.Find(L"The FILM.mkv", L"film", Exact), -1);
    EXPECT_EQ(m_tools.Find(L"x\u00c4", L"\u00e4", Folded), 1);
    EXPECT_EQ(m_tools.Find(L"x\u0416", L"\u0436", Folded), 1);
    EXPECT_EQ(m_tools.Find(L"abc", L"", Folded), 0);
    EXPECT_EQ(m_tools.Find(L"abc", L"abcd", Folded), -1);
    EXPECT_EQ(m_tools.Find(L"aaab", L"aab", Exact), 1) << "a failed start holds a good one";
    EXPECT_EQ(m_tools.Find(L"aabaabaaab", L"aabaaab", Exact), 3) << "a border of a border";
    EXPECT_EQ(m_tools.Find(L"abcab", L"abd", Exact), -1) << "cut off at the end";

    // Trying each place by itself would take 10^11 steps here.
    const std::wstring text = std::wstring(1'000'000, L'a') + std::wstring(100'000, L'A') + L"b";
    const std::wstring needle = std::wstring(100'000, L'a') + L"B";
    EXPECT_EQ(m_tools.Find(text.c_str(), needle.c_str(), Folded), 1'000'000);
    EXPECT_EQ(m_tools.Find(text.c_str(), (needle + L"c").c_str(), Folded), -1);
}

TEST_F(CStringToolsTest, OrdersNaturally)
{
    // clang-format off
    constexpr const wchar_t* InOrder[] = {
        L"", L"0", L"00", L"1", L"01", L"1-01", L"01-1", L"2a", L"2b", L"9", L"010", L"9999999999999999999998",
        L"9999999999999999999999", L"10000000000000000000000", L"a b", L"a1", L"B1", L"b1", L"b01", L"Film", L"film", L"film a",
        L"Film b", L"Part", L"Part 2", L"Part 02", L"Part 10", L"\u0416a", L"\u0436b",
    };
    // clang-format on
    for (const wchar_t* const& a : InOrder)
        for (const wchar_t* const& b : InOrder)
        {
            const int32_t order = &a < &b ? -1 : &a > &b ? 1 : 0;
            EXPECT_EQ(m_tools.Compare(a, b, 0, false, -1), order) << ZVStringUTF8(a) << " " << ZVStringUTF8(b);
            EXPECT_EQ(m_tools.Compare(a, b, 0, true, -1), -order);
        }
    constexpr int32_t Plain = IZVStringTools::CompareWithoutTieBreaks;
    EXPECT_EQ(m_tools.Compare(L"Film 02-1", L"film 2-01", Plain, false, -1), 0);
    EXPECT_EQ(m_tools.Compare(L"film 2", L"Film 03", Plain, false, -1), -1);
    // A length bounds both texts, also within a number.
    EXPECT_EQ(m_tools.Compare(L"a12", L"a19", 0, false, 2), 0);
    EXPECT_EQ(m_tools.Compare(L"a2", L"a10", 0, false, 2), 1);
    EXPECT_EQ(m_tools.Compare(L"a2", L"a10", 0, false, 99), -1);
    EXPECT_EQ(m_tools.Compare(L"a", L"b", 0, false, 0), 0);
}

TEST_F(CStringToolsTest, MatchesWildcards)
{
    EXPECT_TRUE(m_tools.MatchesWildcards(L"Film.MKV", L"film.mkv"));
    EXPECT_FALSE(m_tools.MatchesWildcards(L"film.mkv", L"film"));
    EXPECT_TRUE(m_tools.MatchesWildcards(L"film", L"f*ilm*"));
    EXPECT_TRUE(m_tools.MatchesWildcards(L"a.mkv.mkv", L"*.MKV"));
    EXPECT_FALSE(m_tools.MatchesWildcards(L"abcabd", L"*abc*abc*"));
    EXPECT_TRUE(m_tools.MatchesWildcards(L"\u00c4b", L"?b"));
    EXPECT_FALSE(m_tools.MatchesWildcards(L"ab", L"ab?"));
    EXPECT_FALSE(m_tools.MatchesWildcards(L"ab", L"*??*?*"));
    EXPECT_TRUE(m_tools.MatchesWildcards(L"", L"**"));
    EXPECT_FALSE(m_tools.MatchesWildcards(std::wstring(100'000, L'a').c_str(), L"*a*a*a*a*a*a*b")) << "or it takes very long";
    EXPECT_TRUE(m_tools.HasWildcards(L"a*") && m_tools.HasWildcards(L"?"));
    EXPECT_FALSE(m_tools.HasWildcards(L"[a].mkv"));
}
}
