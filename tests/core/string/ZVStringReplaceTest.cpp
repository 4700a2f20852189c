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
    const auto replaced = [](const wchar_t* start, const Texts& needles, const Texts& replacements, int32_t hits,
                             int32_t most = All, bool keep = !Keep, const wchar_t* prefix = L"", const wchar_t* suffix = nullptr)
    {
        const int32_t count = static_cast<int32_t>(needles.size());
        return Edited(start, [&](S& text)
        { EXPECT_EQ(text.ReplaceMultiple(needles.data(), replacements.data(), count, true, most, keep, prefix, suffix), hits); });
    };
    ExpectTexts({
        {replaced(L"xab", {L"ab", L"a"}, {L"1", L"2"}, 1), L"x1"},  // the first of the list settles a tie
        {replaced(L"caabc", {L"b", L"aa"}, {L"1", L"2"}, 2), L"c21c"},
        {replaced(L"aba", {L"a", L"b"}, {L"bb", L"aa"}, 3), L"bbaabb"},  // what was put in is not searched
        {replaced(L"a.a.a", {L"a"}, {L"bb"}, 2, 2), L"bb.bb.a"}, {replaced(L"abc", {L"a", L""}, {L"1", L"2"}, 0), L"abc"},
        {replaced(L"abcab", {L"b", L"c"}, {L"1", L"2"}, 3, All, Keep, L"<", L">"), L"a<b><c>a<b>"},
        {replaced(L"abcab", {L"b"}, {L"X"}, 2, All, !Keep, L"<"), L"a<Xca<X"},
        {Edited(L"-----", [](S& from) { EXPECT_EQ(from.RemoveText(L"--"), 2); }), L"-"},
    });
    const EmptyPool pool;
    S text(L"a.a.a");
    EXPECT_EQ(text.Replace(L"a", L"12345"), 3);
    EXPECT_EQ(text.GetCapacity(), 18) << "just the room for the result";
    EXPECT_EQ(text.Replace(L"12345.", text), 2);
    EXPECT_EQ(TextOf(text), L"12345.12345.1234512345.12345.1234512345");
}

// Returns each token in brackets, after what would be a token itself.
struct Replacer final : IZVStringTokenReplaceCallback
{
    S ReplaceToken(const S& token) override { return L"[!](" + token + L")"; }
};

TEST(ZVStringReplace, Tokens)
{
    Replacer replacer;
    const auto replaced = [&replacer](S text, const wchar_t* startMarker, const wchar_t* endMarker, bool keepsMarkers)
    {
        text.ReplaceTokens(startMarker, endMarker, replacer, keepsMarkers);
        return text;
    };
    ExpectTexts({
        {replaced(L"x[a]y", L"[", L"]", Keep), L"x[[!](a)]y"}, {replaced(L"]a[b]c[d", L"[", L"]", !Keep), L"]a[!](b)c[d"},
        {replaced(L"[[a[b]c]", L"[", L"]", !Keep), L"[[a[!](b)c]"},  // a token begins after the last start
        {replaced(L"ab xabc", L"ab", L"bc", !Keep), L"[!]( xa)"}, {replaced(L"%a%b%c%d", L"%", L"%", !Keep), L"[!](a)b[!](c)d"},
    });
}
}
