#include "core/string/StringProbe.h"
#include "core/string/ZVStringReplaceHit.h"

#include <climits>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using S = ZVString;

// Gives a text room to grow in its present block.
void Reserve(ZVString& text)
{
    const int32_t length = text.GetLength();
    text.GetBuffer(100);
    text.ReleaseBuffer(length);
}

TEST(ZVStringEdit, Trim)
{
    ExpectTexts({
        {"both ends",              Edited(L"abcdef", [](S& text) { text.Trim(1, 2); }),             L"bcd"  },
        {"sum is the length",      Edited(L"abcdef", [](S& text) { text.Trim(3, 3); }),             L""     },
        {"sum beyond 32 bits",     Edited(L"abcdef", [](S& text) { text.Trim(INT_MAX, INT_MAX); }), L""     },
        {"white space",            Edited(L" \t\r\na b ", [](S& text) { text.TrimWhitespace(); }),  L"a b"  },
        {"white space alone",      Edited(L" \t\n", [](S& text) { text.TrimWhitespace(); }),        L""     },
        {"character on the right", Edited(L"--a-b--", [](S& text) { text.TrimRight(L'-'); }),       L"--a-b"},
        {"set on both sides",      Edited(L"-+a+-", [](S& text) { text.Trim(L"+-"); }),             L"a"    },
    });
}

TEST(ZVStringEdit, CutAtAnOccurrence)
{
    struct Row
    {
        int32_t (*Cut)(ZVString& text, bool keepFound);
        const wchar_t* Dropped;
        const wchar_t* Kept;
    };
    const Row rows[] = {
        {[](S& text, bool keep) { return text.TrimFrontTo(L"--", keep); },      L"b--c",  L"--b--c"},
        {[](S& text, bool keep) { return text.TrimFrontTo(L'-', keep); },       L"-b--c", L"--b--c"},
        {[](S& text, bool keep) { return text.TrimFrontToLast(L"--", keep); },  L"c",     L"--c"   },
        {[](S& text, bool keep) { return text.TrimFrontToLast(L'-', keep); },   L"c",     L"-c"    },
        {[](S& text, bool keep) { return text.TrimBackFrom(L"--", keep); },     L"a",     L"a--"   },
        {[](S& text, bool keep) { return text.TrimBackFrom(L'-', keep); },      L"a",     L"a-"    },
        {[](S& text, bool keep) { return text.TrimBackFromLast(L"--", keep); }, L"a--b",  L"a--b--"},
        {[](S& text, bool keep) { return text.TrimBackFromLast(L'-', keep); },  L"a--b-", L"a--b--"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(testing::Message() << "operation " << &row - rows);
        EXPECT_EQ(TextOf(Edited(L"a--b--c", [&row](S& text) { EXPECT_EQ(row.Cut(text, false), 1); })), row.Dropped);
        EXPECT_EQ(TextOf(Edited(L"a--b--c", [&row](S& text) { EXPECT_EQ(row.Cut(text, true), 1); })), row.Kept);
        EXPECT_EQ(TextOf(Edited(L"xyz", [&row](S& text) { EXPECT_EQ(row.Cut(text, false), 0); })), L"xyz");
    }
}

TEST(ZVStringEdit, Parts)
{
    const ZVString text(L"abcdef");
    const ZVString pairs(L"a=b:c=d");
    ExpectTexts({
        {"middle",                     text.Mid(2, 3),                       L"cde" },
        {"middle up to the end",       text.Mid(4, INT_MAX),                 L"ef"  },
        {"middle beyond the end",      text.Mid(100, 1),                     L""    },
        {"left",                       text.Left(2),                         L"ab"  },
        {"right",                      text.Right(2),                        L"ef"  },
        {"before a set",               pairs.GetBefore(L":="),               L"a"   },
        {"before, with the separator", pairs.GetBefore(L":", true, true),    L"a=b:"},
        {"before what is not there",   pairs.GetBefore(L";"),                L""    },
        {"after a set",                pairs.GetAfterLast(L":="),            L"d"   },
        {"after, with the separator",  pairs.GetAfterLast(L":", true, true), L":c=d"},
        {"between",                    pairs.GetBetween(L"=", L"="),         L"b:c" },
        {"between without an end",     pairs.GetBetween(L"d", L"a"),         L""    },
    });
    for (const ZVString& whole : {text.Mid(-2, 100), text.Left(6), text.Left(7), text.Right(INT_MAX)})
        EXPECT_EQ(whole.GetText(), text.GetText());
}

TEST(ZVStringEdit, Edits)
{
    ExpectTexts({
        {"insert in between", Edited(L"abc", [](S& text) { text.Insert(2, L"xy"); }), L"abxyc"},
        {"insert beyond the end", Edited(L"abc", [](S& text) { text.Insert(4, L"xy"); }), L"abc"},
        {"insert before the front", Edited(L"abc", [](S& text) { text.Insert(-1, L"xy"); }), L"abc"},
        {"insert in its room", Edited(L"abc", [](S& text) { Reserve(text); text.Insert(0, text.GetText() + 1); }), L"bcabc"},
        {"insert itself", Edited(L"abc", [](S& text) { text.Insert(1, text.GetText()); }), L"aabcbc"},
        {"prepend", Edited(L"", [](S& text) { text.Prepend(L"xy"); }), L"xy"},
        {"set at the length", Edited(L"abc", [](S& text) { text.SetAt(3, L'x'); }), L"abc"},
        {"set before the front", Edited(L"abc", [](S& text) { text.SetAt(-1, L'x'); }), L"abc"},
        {"a NUL ends the text", Edited(L"abc", [](S& text) { text.SetAt(1, L'\0'); }), L"a"},
        {"remove a character", Edited(L"bab", [](S& text) { EXPECT_EQ(text.Remove(L'b'), 2); }), L"a"},
        {"replace by more", Edited(L"abcd", [](S& text) { text.Replace(1, 3, L"wxyz"); }), L"awxyzd"},
        {"replace by less", Edited(L"abcd", [](S& text) { text.Replace(1, 3, L"x"); }), L"axd"},
        {"replace by a part of itself", Edited(L"abcd", [](S& text) { text.Replace(0, 1, {text, 3}); }), L"abcbcd"},
        {"replace beyond the end", Edited(L"abcd", [](S& text) { text.Replace(5, 6, L"x"); }), L"abcd"},
        {"capitals", Edited(L"aBc1", [](S& text) { text.MakeUpper(); }), L"ABC1"},
        {"small letters", Edited(L"AbC1", [](S& text) { text.MakeLower(); }), L"abc1"},
    });
}

TEST(ZVStringEdit, CutRanges)
{
    const auto cut = [](const std::vector<ZVStringReplaceHit>& ranges)
    { return Edited(L"abcdefgh", [&ranges](S& text) { text.Cut(ranges.data(), static_cast<int32_t>(ranges.size())); }); };
    ExpectTexts({
        {"apart",              cut({{0, 1}, {3, 5}, {7, 8}}),   L"bcfg"    },
        {"overlapping",        cut({{1, 4}, {2, 6}}),           L"agh"     },
        {"one inside another", cut({{0, 6}, {1, 2}, {3, 4}}),   L"gh"      },
        {"beyond the end",     cut({{6, 100}, {200, 300}}),     L"abcdef"  },
    });
}
}
