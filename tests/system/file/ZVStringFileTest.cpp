#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"

namespace
{
using ZVStringFileTest = FileFixture;

TEST_F(ZVStringFileTest, TheModeDecidesTheBytes)
{
    using namespace std::string_literals;
    const ZVString text = L"a\u00e4\u65e5\U0001f3ac\r\n";
    // Above U+FFFF the product's own UTF-8.
    const std::string utf8 = "a\xc3\xa4\xe6\x97\xa5\xf1\x9f\x8e\xac\r\n";
    const std::string utf16 = "a\0\xe4\0\xe5\x65\x3c\xd8\xac\xdf\r\0\n\0"s;
    const std::string rows[] = {"a\xe4??\r\n", utf8, "\xff\xfe" + utf16, utf16, "\xef\xbb\xbf" + utf8};
    for (int32_t mode = 1; mode <= 5; ++mode)
    {
        Put("file", "a longer text that was there");
        EXPECT_TRUE(text.SaveToFile(TextAt("file"), mode));
        EXPECT_EQ(GetAt("file"), rows[mode - 1]) << mode;
    }
    EXPECT_FALSE(text.SaveToFile(TextAt("file"), 0) || text.SaveToFile(TextAt("file"), 6));
    EXPECT_EQ(GetAt("file"), rows[4]);
    EXPECT_TRUE(ZVString().SaveToFile(TextAt("file"), 2) && GetAt("file").empty());
}

TEST_F(ZVStringFileTest, ThePathIsMadeSafeAndItsFolderIsMade)
{
    const ZVString text = L"x";
    EXPECT_TRUE(text.SaveToFile(TextAt("") + L"new\\sub/a\tb\n*?:<>|\"'.xml", 2));
    EXPECT_EQ(List("new/sub"), "a_b_*?:<>|\"'.xml ");
    InChild([&] { EXPECT_TRUE(chdir(At("new").c_str()) == 0 && text.SaveToFile(L"here.txt", 2)); });
    EXPECT_EQ(List("new"), "here.txt sub ");
    // As workers do at the same time.
    InChildren([&](const std::string& name) { return text.SaveToFile(TextAt("out/" + name), 2); });
    EXPECT_EQ(List("out"), "0 1 2 3 ");
}

TEST_F(ZVStringFileTest, AFileThatCannotBeWrittenIsToldAndNotLeft)
{
    const ZVString text = ZVString::FromUTF8(std::string(100'000, 'x').c_str());
    Put("file", "old");
    EXPECT_FALSE(text.SaveToFile(TextAt("file/a"), 2) || text.SaveToFile(TextAt(""), 2) || text.SaveToFile(L"/dev/full", 2));
    EXPECT_TRUE(std::filesystem::exists("/dev/full") && GetAt("file") == "old");
    ExpectLogged("1|ZVFileSystem::MakeDirectoryTree|Failed! Path=" + At("file/"));
    const auto fillDisk = [&]
    {
        EXPECT_FALSE(text.SaveToFile(TextAt("disk/file"), 2));
        ExpectLogged("1|ZVString::SaveToFile|Error 28, removing the incomplete file: " + At("disk/file"));
        EXPECT_EQ(List("disk"), "");
    };
    WithSmallDisk(fillDisk);
}
}
