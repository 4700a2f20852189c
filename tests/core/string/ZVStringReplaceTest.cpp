#include "core/string/StringProbe.h"

#include <climits>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using Texts = std::vector<const wchar_t*>;
constexpr bool Keep = true;
constexpr int32_t All = INT_MAX;

TEST(ZVStringReplace, Multiple)
{
    struct Row
    {
        const char* Name;
        const wchar_t* Text;
        Texts Needles, Replacements;
        int32_t MaxHits;
        bool KeepsMatch;
        const wchar_t* Prefix;
        const wchar_t* Suffix;
        int32_t Hits;
        const wchar_t* Expected;
    };
    const Row rows[] = {
        {"longer first settles the tie",  L"xab",   {L"ab", L"a"},   {L"1", L"2"},   All, !Keep, L"",  L"",    1, L"x1"         },
        {"leftmost wins",                 L"caabc", {L"b", L"aa"},   {L"1", L"2"},   All, !Keep, L"",  L"",    2, L"c21c"       },
        {"overlapped needle is passed",   L"abcbc", {L"ab", L"bc"},  {L"1", L"2"},   All, !Keep, L"",  L"",    2, L"1c2"        },
        {"result is not searched",        L"aba",   {L"a", L"b"},    {L"bb", L"aa"}, All, !Keep, L"",  L"",    3, L"bbaabb"     },
        {"two hits at most",              L"a.a.a", {L"a"},          {L"bb"},        2,   !Keep, L"",  L"",    2, L"bb.bb.a"    },
        {"matches kept",                  L"abcab", {L"b", L"c"},    {L"1", L"2"},   All, Keep,  L"<", L">",   3, L"a<b><c>a<b>"},
        {"replaced in between",           L"abcab", {L"b"},          {L"X"},         All, !Keep, L"<", nullptr, 2, L"a<Xca<X"   },
        {"empty needle",                  L"abc",   {L"a", L""},     {L"1", L"2"},   All, !Keep, L"",  L"",    0, L"abc"        },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const auto replace = [&row](ZVString& text)
        {
            const int32_t hits =
                text.ReplaceMultiple(row.Needles.data(), row.Replacements.data(), static_cast<int32_t>(row.Needles.size()), true,
                                     row.MaxHits, row.KeepsMatch, row.Prefix, row.Suffix);
            EXPECT_EQ(hits, row.Hits);
        };
        EXPECT_EQ(TextOf(Edited(row.Text, replace)), row.Expected);
    }
}

TEST(ZVStringReplace, OneTextByAnother)
{
    const EmptyPool pool;
    ZVString text(L"a.a.a");
    EXPECT_EQ(text.Replace(L"a", L"12345"), 3);
    EXPECT_EQ(text.GetCapacity(), 18) << "just the room for the result";
    EXPECT_EQ(text.Replace(L"12345.", text), 2);
    EXPECT_EQ(TextOf(text), L"12345.12345.1234512345.12345.1234512345");
    const auto remove = [](const wchar_t* start, const wchar_t* removed, int32_t hits)
    { return Edited(start, [=](ZVString& from) { EXPECT_EQ(from.RemoveText(removed), hits); }); };
    ExpectTexts({
        {"removed apart",        remove(L"a--b--c", L"--", 2), L"abc"},
        {"removed side by side", remove(L"-----", L"--", 2),   L"-"  },
    });
}

TEST(ZVStringReplace, IgnoringCase)
{
    ZVString text(L"aBcAbC");
    const wchar_t* const needle = L"b";
    {
        const FakeSearchTools tools;
        EXPECT_EQ(text.ReplaceMultiple(&needle, nullptr, 1, false, All, Keep, L"<", L">"), 2);
        EXPECT_EQ(text.RemoveText(L"C", false), 2);
        EXPECT_EQ(TextOf(text), L"a<B>A<b>");
    }
    // Without the service the search is exact: no library at all, or one that does not have it.
    EXPECT_EQ(text.Replace(L"a", L"x", false), 1);
    const FakeSearchTools tools(false);
    EXPECT_EQ(text.Replace(L"b", L"y", false), 1);
    EXPECT_EQ(text.RemoveText(L"A", false), 1);
    EXPECT_EQ(TextOf(text), L"x<B><y>");
}

// Lists the tokens, and gives each behind what would be a token itself.
class Replacer final : public IZVStringTokenReplaceCallback
{
public:
    ZVString ReplaceToken(const ZVString& token) override
    {
        Tokens += L"(" + token + L")";
        return L"[!]" + token;
    }

    ZVString Tokens;
};

TEST(ZVStringReplace, Tokens)
{
    struct Row
    {
        const char* Name;
        const wchar_t* Text;
        const wchar_t* Start;
        const wchar_t* End;
        bool KeepsMarkers;
        int32_t Hits;
        const wchar_t* Tokens;
        const wchar_t* Expected;
    };
    const Row rows[] = {
        {"markers kept",                   L"x[a]y",    L"[",  L"]",  Keep,  1, L"(a)",    L"x[[!]a]y"  },
        {"token begins at the last start", L"[[a[b]c]", L"[",  L"]",  !Keep, 1, L"(b)",    L"[[a[!]bc]" },
        {"end before start, and no end",   L"]a[b]c[d", L"[",  L"]",  !Keep, 1, L"(b)",    L"]a[!]bc[d" },
        {"start that runs into the end",   L"ab xabc",  L"ab", L"bc", !Keep, 1, L"( xa)",  L"[!] xa"    },
        {"one marker for both",            L"%a%b%c%d", L"%",  L"%",  !Keep, 2, L"(a)(c)", L"[!]ab[!]cd"},
        {"long markers",                   L"${a}}$}",  L"${", L"}}", Keep,  1, L"(a)",    L"${[!]a}}$}"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVString text(row.Text);
        Replacer replacer;
        EXPECT_EQ(text.ReplaceTokens(row.Start, row.End, replacer, row.KeepsMarkers), row.Hits);
        EXPECT_EQ(TextOf(text), row.Expected);
        EXPECT_EQ(TextOf(replacer.Tokens), row.Tokens);
    }
}
}
