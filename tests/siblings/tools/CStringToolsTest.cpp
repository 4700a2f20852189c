#include "siblings/tools/text/CStringTools.h"

#include "core/string/ZVStringGlobals.h"

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
        {"another mode is exact",           L"aA",           L"A",       1,      1 },
        {"letters of the tables",           L"x\u00c4",      L"\u00e4",  Folded, 1 },
        {"letters above the tables",        L"x\u0416",      L"\u0436",  Folded, 1 },
        {"empty needle",                    L"abc",          L"",        Folded, 0 },
        {"both empty",                      L"",             L"",        Exact,  0 },
        {"empty text",                      L"",             L"a",       Folded, -1},
        {"needle is the text",              L"aBc",          L"AbC",     Folded, 0 },
        {"needle is longer by one",         L"abc",          L"abcd",    Folded, -1},
        {"first of several",                L"-ab-ab",       L"AB",      Folded, 1 },
        {"a failed start holds a good one", L"aaab",         L"aab",     Exact,  1 },
        {"a border inside the needle",      L"abababac",     L"ababac",  Exact,  2 },
        {"a border of a border",            L"aabaabaaab",   L"aabaaab", Exact,  3 },
        {"at the very end",                 L"abcabd",       L"abd",     Exact,  3 },
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

TEST_F(CStringToolsTest, Compares)
{
    struct Row
    {
        const char* Name;
        const wchar_t* A;
        const wchar_t* B;
        int32_t Length;
        int32_t Order;       // of A to B, with tie-breaks
        int32_t PlainOrder;  // without
    };
    constexpr Row Rows[] = {
        {"the same",                          L"Part 2",                 L"Part 2",                 -1, 0,  0 },
        {"numbers by value",                  L"Part 2",                 L"Part 10",                -1, -1, -1},
        {"numbers by value, then text",       L"2b",                     L"2a",                     -1, 1,  1 },
        {"case does not count before that",   L"B",                      L"a",                      -1, 1,  1 },
        {"case decides last, capitals first", L"Film",                   L"film",                   -1, -1, 0 },
        {"later text beats earlier case",     L"film a",                 L"Film b",                 -1, -1, -1},
        {"fewer leading zeros first",         L"Part 2",                 L"Part 02",                -1, -1, 0 },
        {"zeros beat case",                   L"b01",                    L"B1",                     -1, 1,  0 },
        {"text beats zeros",                  L"01a",                    L"1b",                     -1, -1, -1},
        {"the first zeros decide",            L"1-01",                   L"01-1",                   -1, -1, 0 },
        {"zero alone",                        L"0",                      L"00",                     -1, -1, 0 },
        {"zero before one",                   L"00",                     L"1",                      -1, -1, -1},
        {"numbers of any length",             L"9999999999999999999998", L"9999999999999999999999", -1, -1, -1},
        {"longer numbers are larger",         L"9",                      L"1000000000000000000000", -1, -1, -1},
        {"a start comes first",               L"Part",                   L"Part 1",                 -1, -1, -1},
        {"empty comes first",                 L"",                       L"a",                      -1, -1, -1},
        {"digit against letter",              L"1",                      L"a",                      -1, -1, -1},
        {"digit against blank",               L"a1",                     L"a b",                    -1, 1,  1 },
        {"letters above the tables",          L"\u0416a",                L"\u0436b",                -1, -1, -1},
        {"length bounds both",                L"Part 2",                 L"Part 10",                5,  0,  0 },
        {"length cuts a number",              L"a12",                    L"a19",                    2,  0,  0 },
        {"length of more than there is",      L"a2",                     L"a10",                    99, -1, -1},
        {"length 0",                          L"a",                      L"b",                      0,  0,  0 },
    };
    constexpr int32_t Plain = IZVStringTools::CompareWithoutTieBreaks;
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Name);
        EXPECT_EQ(m_tools.Compare(row.A, row.B, 0, false, row.Length), row.Order);
        EXPECT_EQ(m_tools.Compare(row.B, row.A, 0, false, row.Length), -row.Order);
        EXPECT_EQ(m_tools.Compare(row.A, row.B, 0, true, row.Length), -row.Order);
        EXPECT_EQ(m_tools.Compare(row.A, row.B, Plain, false, row.Length), row.PlainOrder);
    }
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
        {"plain, longer pattern",        L"film",             L"film.mkv",       false},
        {"star for all",                 L"film.mkv",         L"*",              true },
        {"star for nothing",             L"film",             L"f*ilm*",         true },
        {"star in front",                L"a.mkv.mkv",        L"*.MKV",          true },
        {"star in front, more behind",   L"a.mkv.mk",         L"*.mkv",          false},
        {"only the last star goes back", L"abcabcd",          L"a*bc*d",         true },
        {"a piece is missing",           L"abcabd",           L"*abc*abc*",      false},
        {"question mark",                L"\u00c4b",          L"?b",             true },
        {"question mark for nothing",    L"b",                L"?b",             false},
        {"question mark at the end",     L"ab",               L"ab?",            false},
        {"stars and question marks",     L"abc",              L"*??*?*",         true },
        {"too few characters",           L"ab",               L"*??*?*",         false},
        {"empty text, stars",            L"",                 L"**",             true },
        {"empty text, question mark",    L"",                 L"?",              false},
        {"both empty",                   L"",                 L"",               true },
        {"empty pattern",                L"a",                L"",               false},
        {"the text's own wild cards",    L"*",                L"a",              false},
        {"many stars end soon",          manyLetters.c_str(), L"*a*a*a*a*a*a*b", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(m_tools.MatchesWildcards(row.Text, row.Pattern), row.Matches) << row.Name;
    EXPECT_TRUE(m_tools.HasWildcards(L"a*"));
    EXPECT_TRUE(m_tools.HasWildcards(L"?"));
    EXPECT_FALSE(m_tools.HasWildcards(L"[a].mkv"));
    EXPECT_FALSE(m_tools.HasWildcards(L""));
}
}
