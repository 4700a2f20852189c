#include "worker/ZVCommandLine.h"

#include "system/filename/ZVNativePath.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
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
    EXPECT_STREQ(Line({" \" \"/Test"}).GetArgument(0), L"/Test");
    EXPECT_STREQ(Line({"\"a\"b\" \""}).GetArgument(0), L"a\"b");
    EXPECT_STREQ(Line({"\t tab stays"}).GetArgument(0), L"\t tab stays");
    EXPECT_STREQ(Line({"\" \""}).GetArgument(0), L"");
}

TEST(ZVCommandLine, MatchesACommandThatIsFollowedByEnoughArguments)
{
    struct Row
    {
        std::vector<std::string> Arguments;
        int32_t MinimumAfter;
        bool IsMatch;
        std::vector<std::wstring> Parameters;
    };
    const Row rows[] = {
        {{},                                   0, false, {}                   },
        {{"foo", "/THUMBnail", "a", "b", "c"}, 2, true,  {L"a", L"b", L"c"}   },
        {{"/Thumbnail", "a", "b"},             2, true,  {L"a", L"b"}         },
        {{"x", "y", "/Thumbnail", "a"},        2, false, {}                   },
        {{"/Thumbnail", "/Thumbnail", "b"},    1, true,  {L"/Thumbnail", L"b"}},
        {{"/Thumbnails", "a", "b"},            2, false, {}                   },
        {{"/Thumbnail"},                       0, true,  {}                   },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(testing::PrintToString(row.Arguments));
        ZVCommandMatch match;
        match.Parameters.Add(L"left over");
        EXPECT_EQ(Line(row.Arguments).Match(L"/Thumbnail", &match, row.MinimumAfter), row.IsMatch);
        EXPECT_EQ(match.Command.IsEmpty(), !row.IsMatch);
        std::vector<std::wstring> parameters;
        for (const ZVString& parameter : match.Parameters)
            parameters.emplace_back(parameter);
        EXPECT_EQ(parameters, row.Parameters);
    }
}

// The text of a parameter follows the product's rules for characters, while its path leads to the file that was named.
TEST(ZVCommandLine, APathKeepsBytesThatTheTextLoses)
{
    ZVCommandMatch match;
    ASSERT_TRUE(Line({"/tEsT", "/a/\xf0\x9f\x8e\xac.mkv", "\"/a/\xff b\" ", "c:\\Video.mpg"}).Match(L"/Test", &match, 1));
    EXPECT_STREQ(match.Command, L"/tEsT");
    const std::pair<const wchar_t*, const char*> expected[] = {
        {L"/a/?.mkv",      "/a/\xf0\x9f\x8e\xac.mkv"},
        {L"/a/\u00ff b",   "/a/\xff b"              },
        {L"c:\\Video.mpg", "c:/Video.mpg"           },
    };
    for (int32_t index = 0; index < 3; ++index)
    {
        EXPECT_STREQ(match.GetParameter(index), expected[index].first);
        EXPECT_EQ(ZVNativePath(match.GetPath(index)).GetBytes(), expected[index].second);
    }
    EXPECT_TRUE(match.GetPath(3).IsEmpty());
}

TEST(ZVCommandLine, JoinsArgumentsAsTheyWouldBeTyped)
{
    EXPECT_STREQ(Line({"a", "b c", "", "it's", "f("}).GetJoined(1), L"\"b c\" \"\" \"it's\" \"f(\"");
    EXPECT_STREQ(Line({"x\"y", "x \" y", "f)"}).GetJoined(0), L"x\\\"y \"x \\\" y\" \"f)\"");
    EXPECT_STREQ(Line({"a"}).GetJoined(1), L"");
}
}
