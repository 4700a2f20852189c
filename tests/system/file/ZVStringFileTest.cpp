#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/ZVDescriptor.h"

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
    for (const int32_t mode : {0, 6})
        EXPECT_FALSE(text.SaveToFile(TextAt("file"), mode)) << mode;
    EXPECT_EQ(GetAt("file"), rows[4]);
    EXPECT_TRUE(ZVString().SaveToFile(TextAt("file"), 2));
    EXPECT_EQ(GetAt("file"), "");
}

TEST_F(ZVStringFileTest, ThePathIsMadeSafeAndItsFolderIsMade)
{
    const ZVString text = L"x";
    EXPECT_TRUE(text.SaveToFile(TextAt("") + L"new\\sub/a\tb\n*?:<>|\"'.xml", 2));
    EXPECT_THAT(List("new/sub"), ElementsAre("a_b_*?:<>|\"'.xml"));
    const auto saveHere = [&]
    {
        ASSERT_EQ(chdir(At("new").c_str()), 0);
        EXPECT_TRUE(text.SaveToFile(L"here.txt", 2));
    };
    InChild(saveHere);
    EXPECT_THAT(List("new"), ElementsAre("here.txt", "sub"));
    // As workers do at the same time.
    InChildren([&](const std::string& name) { return text.SaveToFile(TextAt("out/" + name), 2); });
    EXPECT_THAT(List("out"), ElementsAre("0", "1", "2", "3"));
}

TEST_F(ZVStringFileTest, WhatTheUserMadeOfAnOldFileStays)
{
    const ZVString text = L"new";
    Put("real", "old");
    Link("real", "link");
    ASSERT_EQ(chmod(At("real").c_str(), 0604), 0);
    const bool isGiven = chown(At("real").c_str(), 1234, 5678) == 0;
    EXPECT_TRUE(text.SaveToFile(TextAt("link"), 2));
    struct stat status;
    ASSERT_EQ(lstat(At("real").c_str(), &status), 0);
    EXPECT_EQ(GetAt("real"), "new");
    EXPECT_EQ(status.st_mode, S_IFREG | 0604u);
    EXPECT_EQ(status.st_uid, isGiven ? 1234 : geteuid());
    EXPECT_EQ(status.st_gid, isGiven ? 5678 : getegid());
    EXPECT_TRUE(std::filesystem::is_symlink(At("link")));

    Link("missing", "dangling");
    EXPECT_TRUE(text.SaveToFile(TextAt("dangling"), 2));
    EXPECT_EQ(GetAt("missing"), "new") << "a link is followed where nothing is yet";
    Put("one", "old");
    std::filesystem::create_hard_link(At("one"), At("two"));
    EXPECT_TRUE(text.SaveToFile(TextAt("one"), 2));
    EXPECT_EQ(GetAt("two"), "new") << "both names are still one file";
    // An open file that only a link of the system stands for, as /dev/stdout does.
    const ZVDescriptor opened(open(Put("open", "old").c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(text.SaveToFile(ZVFormat(L"/proc/self/fd/%d", opened.Get()), 2));
    char byte = '\0';
    EXPECT_EQ(read(opened.Get(), &byte, 1), 1);
    EXPECT_EQ(byte, 'n') << "whoever has it open sees the text";
    EXPECT_THAT(List(), ElementsAre("dangling", "link", "missing", "one", "open", "real", "two"));
}

TEST_F(ZVStringFileTest, AFileIsWrittenInPlaceWhereTheFolderForbidsANewOne)
{
    const ZVString text = L"x";
    Put("closed/open", "old");
    Put("closed/locked", "old");
    Put("sticky/open", "old");
    for (const char* name : {"closed/open", "sticky/open"})
        chmod(At(name).c_str(), 0666);
    chmod(At("closed").c_str(), 0555);
    chmod(At("sticky").c_str(), 01777);
    const auto save = [&]
    {
        for (const char* name : {"closed/open", "sticky/open"})
            EXPECT_TRUE(text.SaveToFile(TextAt(name), 2)) << name;
        for (const char* name : {"closed/locked", "closed/new"})
            EXPECT_FALSE(text.SaveToFile(TextAt(name), 2)) << name;
    };
    AsNobody(save);
    for (const char* name : {"closed/open", "sticky/open"})
        EXPECT_EQ(GetAt(name), "x") << name;
    EXPECT_EQ(GetAt("closed/locked"), "old");
    EXPECT_THAT(List("sticky"), ElementsAre("open"));
}

TEST_F(ZVStringFileTest, AFailureLeavesTheOldFileAsItWas)
{
    const ZVString text = ZVString::FromUTF8(std::string(100'000, 'x').c_str());
    Put("file", "old");
    for (const ZVString& path : {TextAt("file/a"), TextAt(""), ZVString(L"/dev/full"), ZVString()})
        EXPECT_FALSE(text.SaveToFile(path, 2)) << Bytes(path);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_EQ(GetAt("file"), "old");
    ExpectLogged("1|ZVFileSystem::MakeDirectoryTree|Failed! Path=" + At("file/"));
    const auto fillDisk = [&]
    {
        Put("disk/file", "old");
        for (const char* name : {"disk/file", "disk/new"})
            EXPECT_FALSE(text.SaveToFile(TextAt(name), 2)) << name;
        ExpectLogged("1|ZVString::SaveToFile|Error 28 saving: " + At("disk/file"));
        EXPECT_EQ(GetAt("disk/file"), "old");
        EXPECT_THAT(List("disk"), ElementsAre("file"));
    };
    WithSmallDisk(fillDisk);
}
}
