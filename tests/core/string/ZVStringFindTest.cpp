#include "core/string/StringProbe.h"

#include <climits>

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
        {"both ends alike",         Compared(L"abab", L"ab"),                0     },
        {"end only",                Compared(L"cdab", L"ab"),                10    },
        {"shorter",                 Compared(L"b", L"ab"),                   10 - 1},
        {"case folded",             Compared(L"ABxB", L"aB", false),         1     },
        {"between the cases",       Compared(L"_", L"A", false),             -11   },
        {"null",                    Compared(L"ab", nullptr),                0     },
        {"equal but for case",      ZVString(L"aB").IsEqual(L"Ab", false),   true  },
        {"case counts",             ZVString(L"aB").IsEqual(L"Ab"),          false },
        {"longer",                  ZVString(L"abc").IsEqual(L"ab", false),  false },
        {"first character folded",  ZVString(L"aB").StartsWith(L'A', false), true  },
        {"first character exactly", ZVString(L"aB").StartsWith(L'A'),        false },
        {"last character folded",   ZVString(L"aB").EndsWith(L'b', false),   true  },
        {"terminator is none",      ZVString().EndsWith(L'\0'),              false },
    });
}

TEST(ZVStringFind, Positions)
{
    const ZVString text(L"abcab");
    ExpectNumbers({
        {"text from a position",             text.Find(L"ab", 1),                        3 },
        {"text cut at the end",              text.Find(L"abc", 1),                       -1},
        {"at the length",                    text.Find(L"", 5),                          -1},
        {"character at the length",          text.Find(L'a', 5),                         -1},
        {"character at a negative position", text.Find(L'a', -1),                        -1},
        {"terminator",                       text.Find(L'\0', 0),                        -1},
        {"one of a set",                     text.FindOneOf(L"cb", 2),                   2 },
        {"backward from the end",            text.ReverseFind(L'a'),                     3 },
        {"backward from beyond the end",     text.ReverseFind(L'b', 99),                 4 },
        {"backward from a hit",              text.ReverseFind(L'a', 3),                  3 },
        {"backward from behind a hit",       text.ReverseFind(L'a', 2),                  0 },
        {"backward from the start",          text.ReverseFind(L'b', 0),                  -1},
        {"backward one of a set",            text.ReverseFindOneOf(L"xb", 3),            1 },
        {"last",                             ZVString(L"aaa").FindLastOf(L"aa"),         1 },
        {"last in any case",                 ZVString(L"abAB").FindLastOf(L"ab", false), 2 },
    });
}

TEST(ZVStringFind, NthAndCount)
{
    const ZVString text(L"abABab");
    ExpectNumbers({
        {"second",                 text.FindNth(L"ab", 2),               4 },
        {"second in any case",     text.FindNth(L"aB", 2, false),        2 },
        {"zeroth",                 text.FindNth(L"ab", 0),               -1},
        {"count in any case",      text.CountOf(L"AB", false),           3 },
        {"second without overlap", ZVString(L"aaaaa").FindNth(L"aa", 2), 2 },
        {"count without overlap",  ZVString(L"aaaaa").CountOf(L"aa"),    2 },
        {"count of nothing",       text.CountOf(nullptr),                0 },
    });
}

TEST(ZVStringFind, NoCase)
{
    const ZVString text(L"xABxab");
    EXPECT_EQ(text.FindNoCase(L"AB"), -1) << "without a tools library";
    {
        const FakeSearchTools tools(false);
        EXPECT_EQ(text.FindNoCase(L"AB"), -1) << "without its search";
    }
    const FakeSearchTools tools;
    ExpectNumbers({
        {"from the start",     text.FindNoCase(L"Ab"),          1 },
        {"mode of the search", tools.LastMode,                  3 },
        {"from a position",    text.FindNoCase(L"aB", 2),       4 },
        {"behind the match",   text.FindNoCase(L"ab", 2, true), 6 },
        {"behind no match",    text.FindNoCase(L"y", 2, true),  -1},
        {"at the length",      text.FindNoCase(L"", 6),         -1},
    });
}
}
