#include "core/containers/ZVStringArray.h"

#include "core/Rows.h"
#include "core/containers/ZVUniqueStringArray.h"

#include <string>
#include <vector>

// The cases stand in columns.
// clang-format off

namespace
{
using Texts = std::vector<std::wstring>;

Texts TextsOf(const ZVStringArray& array)
{
    return Texts(array.begin(), array.end());
}

TEST(ZVStringArray, Split)
{
    ZVStringArray array;
    array.Add(L"old");
    ExpectRows<std::pair<const wchar_t*, const wchar_t*>, Texts>({
        {{L";a;;", L";"}, {L"", L"a", L""}}, {{L";", L";"}, {L""}}, {{L"", L";"}, {}}, {{nullptr, L";"}, {}},
        {{L"a;b", L""}, {L"a;b"}}, {{L"a, b,c, ", L", "}, {L"a", L"b,c"}}, {{L"a---b-", L"--"}, {L"a", L"-b-"}},
        {{L"a;b", nullptr}, {L"a;b"}},
    }, [&array](const auto& textAndDelimiter)
    {
        const auto [text, delimiter] = textAndDelimiter;
        array.SetSplit(text, delimiter);
        const Texts texts = TextsOf(array);
        if (delimiter != nullptr && wcslen(delimiter) < 2)
            array.SetSplit(text, delimiter[0]);
        EXPECT_EQ(TextsOf(array), texts);
        return texts;
    });
    array.SetSplit(L"1|2 3|4", L' ');
    array.SetSplit(array[1], L'|');
    EXPECT_EQ(TextsOf(array), (Texts {L"3", L"4"}));
}

TEST(ZVStringArray, JoinAndFind)
{
    ZVStringArray array;
    array.SetSplit(L"one,,Two", L',');
    EXPECT_STREQ(array.GetJoined(L"--"), L"one----Two");
    EXPECT_STREQ(array.GetJoined(L" ", 1), L" Two");
    EXPECT_STREQ(array.GetJoined(nullptr), L"oneTwo");
    EXPECT_STREQ(array.GetJoined(L",", -1), L"");
    EXPECT_EQ(array.FindText(L"TWO", false), 2);
    EXPECT_EQ(array.FindText(L"TWO"), -1);
}

TEST(ZVUniqueStringArray, KeepsTheFirstOfEachHash)
{
    ZVUniqueStringArray insensitive(false), sensitive(true);
    ExpectRows<const wchar_t*, int32_t>({{L"b", 0}, {L"a", 1}, {L"B", -1}},
                                        [&](const wchar_t* text) { return insensitive.Add(text); });
    // The factor is 65599, so a first character one higher weighs as much as a second one that is 65599 higher.
    const wchar_t collision[] = {L'a', L'b' + 65599, L'\0'};
    ExpectRows<const wchar_t*, int32_t>({{L"bb", 0}, {L"BB", 1}, {collision, -1}},
                                        [&](const wchar_t* text) { return sensitive.Add(text); });
}
}
