#include "core/string/StringProbe.h"

// The cases stand in columns.
// clang-format off

namespace
{
// The signs of both comparisons, the start's in the tens. The tests of both ends must agree with them.
int64_t Compared(const wchar_t* start, const wchar_t* other, bool caseSensitive = true)
{
    const auto sign = [](int32_t value) { return value < 0 ? -1 : value > 0 ? 1 : 0; };
    const ZVString text(start);
    const int startSign = sign(text.CompareStart(other, caseSensitive));
    const int endSign = sign(text.CompareEnd(other, caseSensitive));
    const bool isText = other != nullptr && *other != L'\0';
    EXPECT_EQ(text.StartsWith(other, caseSensitive), isText && startSign == 0);
    EXPECT_EQ(text.EndsWith(other, caseSensitive), isText && endSign == 0);
    return startSign * 10 + endSign;
}

TEST(ZVStringFind, Compare)
{
    ExpectNumbers({
        {Compared(L"abab", L"ab"), 0}, {Compared(L"cdab", L"ab"), 10}, {Compared(L"b", L"ab"), 9},
        {Compared(L"ABxB", L"aB", false), 1}, {Compared(L"_", L"A", false), -11}, {Compared(L"ab", nullptr), 0},
        {S(L"abc").IsEqual(L"ab", false), false}, {S(L"aB").StartsWith(L'A', false), true}, {S(L"aB").StartsWith(L'A'), false},
        {S(L"aB").EndsWith(L'b', false), true}, {S().EndsWith(L'\0'), false},
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

TEST(ZVStringFind, NoCase)
{
    const S text(L"xABxab");
    EXPECT_EQ(text.FindNoCase(L"AB"), -1) << "without a tools library";
    EXPECT_EQ((static_cast<void>(FakeSearchTools(false)), text.FindNoCase(L"AB")), -1) << "without its search";
    const FakeSearchTools tools;
    ExpectNumbers({
        {text.FindNoCase(L"Ab"), 1}, {tools.LastMode, 3}, {text.FindNoCase(L"aB", 2), 4}, {text.FindNoCase(L"ab", 2, true), 6},
        {text.FindNoCase(L"y", 2, true), -1}, {text.FindNoCase(L"", 6), -1},
    });
}
}
