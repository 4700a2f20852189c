#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"

namespace
{
using ZVStringFileTest = FileFixture;

std::string Units(const char16_t* text)
{
    return {reinterpret_cast<const char*>(text), std::char_traits<char16_t>::length(text) * sizeof(char16_t)};
}

TEST_F(ZVStringFileTest, TheModeDecidesTheBytes)
{
    const wchar_t text[] = L"a\u00e4\u65e5\U0001f3ac\r\n";
    const std::pair<int32_t, std::string> rows[] = {
        {1, "a\xe4??\r\n"                                         },
 // Above U+FFFF the product's own UTF-8.
        {2, "a\xc3\xa4\xe6\x97\xa5\xf1\x9f\x8e\xac\r\n"           },
        {3, Units(u"\ufeffa\u00e4\u65e5\U0001f3ac\r\n")           },
        {4, Units(u"a\u00e4\u65e5\U0001f3ac\r\n")                 },
        {5, "\xef\xbb\xbf"
            "a\xc3\xa4\xe6\x97\xa5\xf1\x9f\x8e\xac\r\n"},
    };
    for (const auto& [mode, bytes] : rows)
    {
        Put("file", "a longer text that was there");
        EXPECT_TRUE(ZVString(text).SaveToFile(TextAt("file"), mode));
        EXPECT_EQ(GetAt("file"), bytes) << mode;
    }
    for (const int32_t mode : {0, 6, -1})
        EXPECT_FALSE(ZVString(text).SaveToFile(TextAt("file"), mode));
    EXPECT_EQ(GetAt("file"), rows[4].second);
    EXPECT_TRUE(ZVString().SaveToFile(TextAt("file"), 2));
    EXPECT_EQ(GetAt("file"), "");
    EXPECT_TRUE(ZVString(L"x").SaveToFile(TextAt("file"), 3));
    EXPECT_EQ(GetAt("file"), Units(u"\ufeffx"));
}

TEST_F(ZVStringFileTest, ThePathIsMadeSafeAndItsFolderIsMade)
{
    EXPECT_TRUE(ZVString(L"x").SaveToFile(TextAt("new\\sub/a\tb\n*?:<>|\"'.xml"), 2) && IsAt("new\\sub"));
    std::filesystem::remove_all(At("new\\sub"));
    EXPECT_TRUE(ZVString(L"x").SaveToFile(ZVNativePath::ToText(m_folder.c_str()) + L"new\\sub/a\tb\n*?:<>|\"'.xml", 2));
    EXPECT_EQ(List("new/sub"), "a_b_*?:<>|\"'.xml ");
    EXPECT_TRUE(InChild(
        [&]
        {
            ASSERT_EQ(chdir(At("new").c_str()), 0);
            EXPECT_TRUE(ZVString(L"x").SaveToFile(L"here.txt", 2));
        }));
    EXPECT_EQ(List("new"), "here.txt sub ");
}

TEST_F(ZVStringFileTest, AFileThatCannotBeWrittenIsToldAndNotLeft)
{
    Put("file", "old");
    EXPECT_FALSE(ZVString(L"x").SaveToFile(TextAt("file/a"), 2));
    EXPECT_FALSE(ZVString(L"x").SaveToFile(TextAt(""), 2));
    EXPECT_EQ(GetAt("file"), "old");
    ExpectLogged("1|ZVFileSystem::MakeDirectoryTree|Failed! Path=" + At("file/"));
    ExpectLogged("1|ZVFile::Reopen|Error 20 opening file: " + At("file/a"));
    ExpectLogged("1|ZVFile::Reopen|Error 21 opening file: " + m_folder);
    chmod(At("file").c_str(), 0444);
    EXPECT_TRUE(AsNobody([&] { EXPECT_FALSE(ZVString(L"x").SaveToFile(TextAt("file"), 2)); }));
    EXPECT_EQ(GetAt("file"), "old");
    EXPECT_FALSE(ZVString(L"x").SaveToFile(L"/dev/full", 2));
    EXPECT_TRUE(std::filesystem::exists("/dev/full"));

    const std::string reason = MissingSmallDisk();
    if (!reason.empty())
        GTEST_SKIP() << reason;
    const auto fillDisk = [&]
    {
        const std::string text(100'000, 'x');
        EXPECT_FALSE(ZVString::FromUTF8(text.c_str()).SaveToFile(TextAt("disk/file"), 2));
        ExpectLogged("1|ZVString::SaveToFile|Error 28, removing the incomplete file: " + At("disk/file"));
        EXPECT_EQ(List("disk"), "");
    };
    EXPECT_TRUE(WithSmallDisk(fillDisk));
}

TEST_F(ZVStringFileTest, WorkersSaveIntoOneFolderAtTheSameTime)
{
    const auto save = [&](const std::string& name)
    {
        bool isSaved = true;
        for (int round = 0; round < 100; ++round)
            isSaved = ZVString(L"x").SaveToFile(TextAt("out/" + name), 2) && isSaved;
        return isSaved;
    };
    EXPECT_TRUE(InChildren(save));
    EXPECT_EQ(List("out"), "0 1 2 3 ");
}
}
