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

TEST_F(CStringToolsTest, Finds)
{
    struct Row
    {
        const char* Name;
        const wchar_t* Text;
        const wchar_t* Needle;
        int32_t Mode;
        int32_t Position;
    };
    constexpr int32_t Exact = 0;
    constexpr int32_t Folded = IZVStringTools::FindFolded;
    constexpr Row Rows[] = {
        {"other case, folded",              L"The FILM.mkv", L"film",    Folded, 4 },
        {"other case, exact",               L"The FILM.mkv", L"film",    Exact,  -1},
        {"letters of the tables",           L"x\u00c4",      L"\u00e4",  Folded, 1 },
        {"letters above the tables",        L"x\u0416",      L"\u0436",  Folded, 1 },
        {"empty needle",                    L"abc",          L"",        Folded, 0 },
        {"needle is longer by one",         L"abc",          L"abcd",    Folded, -1},
        {"first of several",                L"-ab-ab",       L"AB",      Folded, 1 },
        {"a failed start holds a good one", L"aaab",         L"aab",     Exact,  1 },
        {"a border of a border",            L"aabaabaaab",   L"aabaaab", Exact,  3 },
        {"cut off at the end",              L"abcab",        L"abd",     Exact,  -1},
    };
    for (const Row& row : Rows)
        EXPECT_EQ(m_tools.Find(row.Text, row.Needle, row.Mode), row.Position) << row.Name;
}

TEST_F(CStringToolsTest, FindsLongNeedlesInTimeThatGrowsWithTheText)
{
    // Trying each place by itself would take 10^11 steps here.
    const std::wstring text = std::wstring(1'000'000, L'a') + std::wstring(100'000, L'A') + L"b";
    const std::wstring needle = std::wstring(100'000, L'a') + L"B";
    EXPECT_EQ(m_tools.Find(text.c_str(), needle.c_str(), IZVStringTools::FindFolded), 1'000'000);
    EXPECT_EQ(m_tools.Find(text.c_str(), (needle + L"c").c_str(), IZVStringTools::FindFolded), -1);
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
    const auto order = [](ptrdiff_t a, ptrdiff_t b) { return a < b ? -1 : a > b ? 1 : 0; };
    for (const wchar_t* const& a : InOrder)
        for (const wchar_t* const& b : InOrder)
        {
            EXPECT_EQ(m_tools.Compare(a, b, 0, false, -1), order(&a - InOrder, &b - InOrder))
                << ZVStringUTF8(a) << " " << ZVStringUTF8(b);
            EXPECT_EQ(m_tools.Compare(a, b, 0, true, -1), order(&b - InOrder, &a - InOrder));
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
    struct Row
    {
        const char* Name;
        const wchar_t* Text;
        const wchar_t* Pattern;
        bool Matches;
    };
    const std::wstring manyLetters(100'000, L'a');
    const Row rows[] = {
        {"plain, folded",                L"Film.MKV",         L"film.mkv",       true },
        {"plain, shorter pattern",       L"film.mkv",         L"film",           false},
        {"star for nothing",             L"film",             L"f*ilm*",         true },
        {"star in front",                L"a.mkv.mkv",        L"*.MKV",          true },
        {"only the last star goes back", L"abcabcd",          L"a*bc*d",         true },
        {"a piece is missing",           L"abcabd",           L"*abc*abc*",      false},
        {"question mark",                L"\u00c4b",          L"?b",             true },
        {"question mark at the end",     L"ab",               L"ab?",            false},
        {"too few characters",           L"ab",               L"*??*?*",         false},
        {"empty text, stars",            L"",                 L"**",             true },
        {"many stars end soon",          manyLetters.c_str(), L"*a*a*a*a*a*a*b", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(m_tools.MatchesWildcards(row.Text, row.Pattern), row.Matches) << row.Name;
    EXPECT_TRUE(m_tools.HasWildcards(L"a*") && m_tools.HasWildcards(L"?"));
    EXPECT_FALSE(m_tools.HasWildcards(L"[a].mkv"));
}
}
