#include "worker/ZVCommandLine.h"

#include "system/filename/ZVNativePath.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{
ZVCommandLine Line(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "ZVWorker");
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    ZVCommandLine line;
    line.Assign(static_cast<int32_t>(argv.size()), argv.data());
    return line;
}

TEST(ZVCommandLine, StripsBlanksAndDoubleQuotesFromBothEnds)
{
    const struct
    {
        const char* Argument;
        const wchar_t* Expected;
    } rows[] = {
        {"plain",                L"plain"       },
        {" \" \"/Test",          L"/Test"       },
        {"\"a b\" \"",           L"a b"         },
        {"in\"side",             L"in\"side"    },
        {"\t tab stays",         L"\t tab stays"},
        {"\" \"",                L""            },
        {"\xc3\xa4\xe6\x97\xa5", L"\u00e4\u65e5"},
    };
    for (const auto& row : rows)
        EXPECT_STREQ(Line({row.Argument}).GetArgument(0), row.Expected) << row.Argument;
}

TEST(ZVCommandLine, MatchesACommandThatLeavesEnoughArgumentsBehindIt)
{
    const struct
    {
        const char* Name;
        std::vector<std::string> Arguments;
        int32_t MinAfter;
        bool Matches;
        std::vector<std::wstring> Parameters;
    } rows[] = {
        {"no arguments at all",             {},                                0, false, {}                   },
        {"case is folded",                  {"/THUMBnail", "a", "b", "c"},     2, true,  {L"a", L"b", L"c"}   },
        {"earlier arguments are skipped",   {"foo", "/Thumbnail", "a", "b"},   2, true,  {L"a", L"b"}         },
        {"one argument too few",            {"/Thumbnail", "a"},               2, false, {}                   },
        {"arguments in front do not count", {"x", "y", "/Thumbnail", "a"},     2, false, {}                   },
        {"the first of two wins",           {"/Thumbnail", "/Thumbnail", "b"}, 1, true,  {L"/Thumbnail", L"b"}},
        {"whole text only",                 {"/Thumbnails", "a", "b"},         2, false, {}                   },
        {"nothing needed behind it",        {"/Thumbnail"},                    0, true,  {}                   },
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        ZVCommandMatch match;
        match.Parameters.Add(L"left over");
        ASSERT_EQ(Line(row.Arguments).Match(L"/Thumbnail", &match, row.MinAfter), row.Matches);
        EXPECT_EQ(match.Command.IsEmpty(), !row.Matches);
        ASSERT_EQ(static_cast<size_t>(match.Parameters.GetCount()), row.Parameters.size());
        for (size_t index = 0; index < row.Parameters.size(); ++index)
            EXPECT_STREQ(match.GetParameter(static_cast<int32_t>(index)), row.Parameters[index].c_str());
    }
}

TEST(ZVCommandLine, KeepsTheCommandAsTypedAndReadsAMissingParameterAsEmpty)
{
    ZVCommandMatch match;
    ASSERT_TRUE(Line({"/tEsT"}).Match(L"/Test", &match, 0));
    EXPECT_STREQ(match.Command, L"/tEsT");
    EXPECT_STREQ(match.GetParameter(0), L"");
}

// The text of a parameter follows the product's rules for characters, while its path leads to the file that was named.
TEST(ZVCommandLine, APathKeepsBytesThatTheTextLoses)
{
    const struct
    {
        const char* Argument;
        const wchar_t* Text;
        const char* Path;
    } rows[] = {
        {"/a/\xf0\x9f\x8e\xac.mkv", L"/a/?.mkv", "/a/\xf0\x9f\x8e\xac.mkv"},
        {"\"/a/\xff b\" ", L"/a/\u00ff b", "/a/\xff b"},
        {"c:\\Video.mpg", L"c:\\Video.mpg", "c:/Video.mpg"},
        {"/\xc3\xa4", L"/\u00e4", "/\xc3\xa4"},
    };
    for (const auto& row : rows)
    {
        ZVCommandMatch match;
        ASSERT_TRUE(Line({"/Test", row.Argument}).Match(L"/Test", &match, 1));
        EXPECT_STREQ(match.GetParameter(0), row.Text);
        EXPECT_EQ(ZVNativePath(match.GetPath(0)).GetBytes(), row.Path);
        EXPECT_TRUE(match.GetPath(1).IsEmpty());
    }
}

TEST(ZVCommandLine, JoinsArgumentsAsTheyWouldBeTyped)
{
    const struct
    {
        std::vector<std::string> Arguments;
        int32_t From;
        const wchar_t* Expected;
    } rows[] = {
        {{"a", "b c", "d"}, 1, L"\"b c\" d"    },
        {{"it's"},          0, L"\"it's\""     },
        {{"f(", "f)"},      0, L"\"f(\" \"f)\""},
        {{"x\"y"},          0, L"x\\\"y"       },
        {{"x \" y"},        0, L"\"x \\\" y\"" },
        {{"a", "", "b"},    0, L"a \"\" b"     },
        {{"a"},             1, L""             },
    };
    for (const auto& row : rows)
        EXPECT_STREQ(Line(row.Arguments).GetJoined(row.From), row.Expected);
}
}
