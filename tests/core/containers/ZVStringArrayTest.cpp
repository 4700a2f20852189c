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
    EXPECT_STREQ(array.GetJoined(L", "), L"");
    array.SetSplit(L"one,,Two", L',');
    EXPECT_STREQ(array.GetJoined(L"--") + array.GetJoined(L" ", 1) + array.GetJoined(nullptr), L"one----Two TwooneTwo");
    EXPECT_STREQ(array.GetJoined(L",", 3) + array.GetJoined(L",", -1), L"");
    EXPECT_TRUE(array.FindText(L"TWO", false) == 2 && array.FindText(L"TWO") == -1 && array.FindText(L"") == 1);
}

TEST(ZVUniqueStringArray, KeepsTheFirstOfEachHash)
{
    ZVUniqueStringArray insensitive(false), sensitive(true);
    EXPECT_TRUE(insensitive.Add(L"b") == 0 && insensitive.Add(L"a") == 1 && insensitive.Add(L"B") == -1);
    EXPECT_EQ(TextsOf(insensitive.GetStrings()), (Texts {L"b", L"a"}));
    EXPECT_TRUE(insensitive.Contains(L"A"));
    insensitive.RemoveAll();
    EXPECT_EQ(insensitive.Add(L"A"), 0);
    // The factor is 65599, so a first character one higher weighs as much as a second one that is 65599 higher.
    const wchar_t collision[] = {L'a', L'b' + 65599, L'\0'};
    EXPECT_TRUE(sensitive.Add(L"bb") == 0 && sensitive.Add(L"BB") == 1 && sensitive.Add(collision) == -1);
}
}
