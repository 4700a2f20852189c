#include "core/string/StringProbe.h"
#include "core/string/ZVStringReplaceHit.h"

#include <climits>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
TEST(ZVStringEdit, CutAtAnOccurrence)
{
    using Cut = int32_t (*)(S& text, bool keepFound);
    ExpectRows<Cut, std::wstring>({
        {[](S& text, bool keep) { return text.TrimFrontTo(L"--", keep); },      L"b--c|--b--c" },
        {[](S& text, bool keep) { return text.TrimFrontTo(L'-', keep); },       L"-b--c|--b--c"},
        {[](S& text, bool keep) { return text.TrimFrontToLast(L"--", keep); },  L"c|--c"       },
        {[](S& text, bool keep) { return text.TrimFrontToLast(L'-', keep); },   L"c|-c"        },
        {[](S& text, bool keep) { return text.TrimBackFrom(L"--", keep); },     L"a|a--"       },
        {[](S& text, bool keep) { return text.TrimBackFrom(L'-', keep); },      L"a|a-"        },
        {[](S& text, bool keep) { return text.TrimBackFromLast(L"--", keep); }, L"a--b|a--b--" },
        {[](S& text, bool keep) { return text.TrimBackFromLast(L'-', keep); },  L"a--b-|a--b--"},
    }, [](Cut cut)
    {
        EXPECT_EQ(TextOf(Edited(L"xyz", [cut](S& text) { EXPECT_EQ(cut(text, false), 0); })), L"xyz");
        return TextOf(Edited(L"a--b--c", [cut](S& text) { EXPECT_EQ(cut(text, false), 1); })) + L"|" +
               TextOf(Edited(L"a--b--c", [cut](S& text) { EXPECT_EQ(cut(text, true), 1); }));
    });
}

TEST(ZVStringEdit, Parts)
{
    const S text(L"abcdef"), pairs(L"a=b:c=d");
    ExpectTexts({
        {text.Mid(2, 3), L"cde"}, {text.Mid(4, INT_MAX), L"ef"}, {text.Mid(100, 1), L""}, {text.Left(2), L"ab"},
        {text.Right(2), L"ef"}, {pairs.GetBetween(L"=", L"="), L"b:c"}, {pairs.GetBetween(L"d", L"a"), L""},
        {pairs.GetBefore(L":="), L"a"}, {pairs.GetBefore(L":", true, true), L"a=b:"}, {pairs.GetBefore(L";"), L""},
        {pairs.GetAfterLast(L":="), L"d"}, {pairs.GetAfterLast(L":", true, true), L":c=d"},
    });
    for (const S& whole : {text.Mid(-2, 100), text.Left(6), text.Left(7), text.Right(INT_MAX)})
        EXPECT_EQ(whole.GetText(), text.GetText());
}

TEST(ZVStringEdit, Edits)
{
    const auto cut = [](const std::vector<ZVStringReplaceHit>& ranges)
    { return Edited(L"abcdefgh", [&ranges](S& text) { text.Cut(ranges.data(), static_cast<int32_t>(ranges.size())); }); };
    ExpectTexts({
        {Edited(L"abcdef", [](S& text) { text.Trim(1, 2); }), L"bcd"},
        {Edited(L"abcdef", [](S& text) { text.Trim(INT_MAX, INT_MAX); }), L""},
        {Edited(L" \t\r\na b ", [](S& text) { text.TrimWhitespace(); }), L"a b"},
        {Edited(L"--a-b--", [](S& text) { text.TrimRight(L'-'); }), L"--a-b"},
        {Edited(L"-+a+-", [](S& text) { text.Trim(L"+-"); }), L"a"},
        {Edited(L"abc", [](S& text) { text.Insert(2, L"xy"); text.Insert(6, L"xy"); text.Insert(-1, L"xy"); }), L"abxyc"},
        {Edited(L"abc", [](S& text) { text.GetBuffer(9); text.ReleaseBuffer(3); text.Insert(0, &text.GetText()[1]); }), L"bcabc"},
        {Edited(L"abc", [](S& text) { text.Insert(1, text.GetText()); }), L"aabcbc"},
        {Edited(L"", [](S& text) { text.Prepend(L"xy"); }), L"xy"},
        {Edited(L"abc", [](S& text) { text.SetAt(3, L'x'); text.SetAt(-1, L'x'); text.SetAt(1, L'\0'); }), L"a"},
        {Edited(L"bab", [](S& text) { EXPECT_EQ(text.Remove(L'b'), 2); }), L"a"},
        {Edited(L"abcd", [](S& text) { text.Replace(1, 3, L"wxyz"); }), L"awxyzd"},
        {Edited(L"abcd", [](S& text) { text.Replace(0, 1, ZVStringPiece(text, 3)); }), L"abcbcd"},
        {Edited(L"abcd", [](S& text) { text.Replace(2, 5, L"x"); text.Replace(2, 1, L"x"); text.Replace(-1, 1, L"x"); }),
         L"abcd"},
        {Edited(L"aBc1", [](S& text) { text.MakeUpper(); }), L"ABC1"},
        {Edited(L"AbC1", [](S& text) { text.MakeLower(); }), L"abc1"},
        {cut({{0, 1}, {3, 5}, {7, 8}}), L"bcfg"}, {cut({{1, 4}, {2, 6}}), L"agh"}, {cut({{0, 6}, {1, 2}, {3, 4}}), L"gh"},
        {cut({{6, 100}, {200, 300}}), L"abcdef"},
    });
}
}
