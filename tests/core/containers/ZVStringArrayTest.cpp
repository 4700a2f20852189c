#include "core/containers/ZVStringArray.h"
#include "core/containers/ZVUniqueStringArray.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using Texts = std::vector<std::wstring>;

Texts TextsOf(const ZVStringArray& array)
{
    Texts texts;
    for (const ZVString& text : array)
        texts.emplace_back(text.GetText());
    return texts;
}

TEST(ZVStringArray, Split)
{
    struct Row
    {
        const char* Name;
        const wchar_t* Text;
        const wchar_t* Delimiter;
        Texts Expected;
    };
    const Row rows[] = {
        {"last empty part is dropped",                  L"a;b;",     L";",    {L"a", L"b"}     },
        {"empty part in between stays",                 L"a;;b",     L";",    {L"a", L"", L"b"}},
        {"empty first part stays",                      L";a",       L";",    {L"", L"a"}      },
        {"only one of two last empty parts is dropped", L"a;;",      L";",    {L"a", L""}      },
        {"delimiter alone",                             L";",        L";",    {L""}            },
        {"empty text",                                  L"",         L";",    {}               },
        {"null text",                                   nullptr,     L";",    {}               },
        {"delimiter absent",                            L"a,b",      L";",    {L"a,b"}         },
        {"longer delimiter",                            L"a, b,c, ", L", ",   {L"a", L"b,c"}   },
        {"longer delimiter does not overlap",           L"a---b",    L"--",   {L"a", L"-b"}    },
        {"part of a delimiter at the end",              L"a--b-",    L"--",   {L"a", L"b-"}    },
        {"empty delimiter",                             L"a;b",      L"",     {L"a;b"}         },
        {"null delimiter",                              L"a;b",      nullptr, {L"a;b"}         },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVStringArray array;
        array.Add(L"old");
        array.SetSplit(row.Text, row.Delimiter);
        EXPECT_EQ(TextsOf(array), row.Expected);
        if (row.Delimiter == nullptr || wcslen(row.Delimiter) > 1)
            continue;
        array.SetSplit(row.Text, row.Delimiter[0]);
        EXPECT_EQ(TextsOf(array), row.Expected);
    }
}

TEST(ZVStringArray, SplitOfAnOwnElement)
{
    ZVStringArray array;
    array.SetSplit(L"1|2 3|4", L' ');
    array.SetSplit(array[1], L'|');
    EXPECT_EQ(TextsOf(array), (Texts {L"3", L"4"}));
}

TEST(ZVStringArray, JoinAndFind)
{
    ZVStringArray array;
    EXPECT_STREQ(array.GetJoined(L", "), L"");
    array.SetSplit(L"one,,Two", L',');
    EXPECT_STREQ(array.GetJoined(L"--"), L"one----Two");
    EXPECT_STREQ(array.GetJoined(L" ", 1), L" Two");
    EXPECT_STREQ(array.GetJoined(nullptr), L"oneTwo");
    EXPECT_STREQ(array.GetJoined(L",", 3), L"");
    EXPECT_STREQ(array.GetJoined(L",", -1), L"");
    EXPECT_EQ(array.FindText(L"Two"), 2);
    EXPECT_EQ(array.FindText(L"TWO"), -1);
    EXPECT_EQ(array.FindText(L"TWO", false), 2);
    EXPECT_EQ(array.FindText(L""), 1);
    EXPECT_EQ(array.Find(L"one"), 0);
}

TEST(ZVUniqueStringArray, KeepsTheFirstOfEach)
{
    ZVUniqueStringArray insensitive(false);
    EXPECT_EQ(insensitive.Add(L"b"), 0);
    EXPECT_EQ(insensitive.Add(L"a"), 1);
    EXPECT_EQ(insensitive.Add(L"B"), -1);
    EXPECT_EQ(TextsOf(insensitive.GetStrings()), (Texts {L"b", L"a"}));
    EXPECT_TRUE(insensitive.Contains(L"A"));
    insensitive.RemoveAll();
    EXPECT_EQ(insensitive.Add(L"A"), 0);

    ZVUniqueStringArray sensitive(true);
    EXPECT_EQ(sensitive.Add(L"b"), 0);
    EXPECT_EQ(sensitive.Add(L"B"), 1);
    EXPECT_EQ(sensitive.Add(L"b"), -1);
}

// The factor is 65599, so a first character one higher weighs as much as a second one that is 65599 higher.
TEST(ZVUniqueStringArray, EqualHashesAreEqualStrings)
{
    const wchar_t collision[] = {L'a', L'b' + 65599, L'\0'};
    ZVUniqueStringArray array(true);
    EXPECT_EQ(array.Add(L"bb"), 0);
    EXPECT_EQ(array.Add(collision), -1);
}
}
