#include "core/string/StringProbe.h"

// The cases stand in columns.
// clang-format off

namespace
{
int32_t SignOf(int32_t value)
{
    return value < 0 ? -1 : value > 0 ? 1 : 0;
}

TEST(ZVStringFind, Compare)
{
    constexpr bool Fold = false;
    ExpectNumbers({
        {S(L"abab").CompareStart(L"ab"), 0}, {SignOf(S(L"cdab").CompareStart(L"ab")), 1}, {S(L"cdab").CompareEnd(L"ab"), 0},
        {S(L"b").CompareEnd(L"ab"), -1}, {S(L"ABxB").CompareStart(L"aB", Fold), 0}, {SignOf(S(L"_").CompareEnd(L"A", Fold)), -1},
        {S(L"ab").StartsWith(L"ab"), true}, {S(L"ab").StartsWith(nullptr), false}, {S(L"ab").EndsWith(L""), false},
        {S(L"xaB").EndsWith(L"Ab", Fold), true}, {S(L"xaB").EndsWith(L"Ab"), false}, {S(L"aB").StartsWith(L'A', Fold), true},
        {S(L"aB").StartsWith(L'A'), false}, {S(L"aB").EndsWith(L'b', Fold), true}, {S(L"abc").IsEqual(L"ab", Fold), false},
    });
}

TEST(ZVStringFind, Positions)
{
    const S text(L"abcab"), cases(L"abABab");
    ExpectNumbers({
        {text.Find(L"ab", 1), 3}, {text.Find(L"", 5), -1}, {text.Find(L'a', 5), -1}, {text.Find(L'a', -1), -1},
        {text.Find(L'\0', 0), -1}, {text.FindOneOf(L"cb", 2), 2}, {text.ReverseFindOneOf(L"xb", 3), 1},
        {text.ReverseFind(L'b', 99), 4}, {text.ReverseFind(L'a', 3), 3}, {text.ReverseFind(L'b', 0), -1},
        {S(L"aaa").FindLastOf(L"aa"), 1}, {S(L"abAB").FindLastOf(L"ab", false), 2},
        {cases.FindNth(L"ab", 2), 4}, {cases.FindNth(L"aB", 2, false), 2}, {cases.FindNth(L"ab", 0), -1},
        {cases.CountOf(L"AB", false), 3}, {cases.CountOf(nullptr), 0},
        {S(L"aaaaa").FindNth(L"aa", 2), 2}, {S(L"aaaaa").CountOf(L"aa"), 2},  // without overlap
        {S(L"-1,2.3").IsNumber(), true}, {S(L"1-").IsNumber(), false}, {S().IsNumber(), false}, {S(L"123").IsNumber(2), false},
    });
}
}
