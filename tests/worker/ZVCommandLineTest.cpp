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
