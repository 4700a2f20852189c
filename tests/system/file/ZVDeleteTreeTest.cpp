#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"

#include <tuple>

namespace
{
using ZVDeleteTreeTest = FileFixture;

// Lines of the file of refusals that tell of a path.
int64_t CountRefusals(const std::string& content, const std::string& path)
{
    const std::string line = "REJECTING DELETE BECAUSE PATH=" + path + "\n";
    int64_t count = 0;
    for (size_t at = content.find(line); at != std::string::npos; at = content.find(line, at + 1))
        ++count;
    return count;
}

TEST_F(ZVDeleteTreeTest, DeletesWhatItIsTold)
{
    // Whether the root is kept, the filter, and what is left in the folder and in the one below.
    const std::tuple<bool, const wchar_t*, const char*, const char*> rows[] = {
        {false, L"",    "(none)",                                 "(none)"        },
        {true,  L"",    ".hidden ",                               "(none)"        },
        {true,  L"TMP", ".hidden b.mkv dangling empty link sub ", ".x c.mkv deep "},
        {false, L"tmp", "(none)",                                 "(none)"        },
    };
    for (const auto& [keepRoot, filter, left, leftBelow] : rows)
    {
        SCOPED_TRACE(left);
        Put("other/kept");
        for (const char* name : {"t/a.tmp", "t/b.mkv", "t/.hidden", "t/sub/.x", "t/sub/c.mkv", "t/sub/deep/'d\\ \xff'.tmp"})
            Put(name);
        MakeFolder("t/empty");
        Link("../other", "t/link");
        Link("nothing", "t/dangling");
        EXPECT_TRUE(ZVFileSystem::DeleteDirectoryTree(TextAt("t/"), keepRoot, filter));
        EXPECT_EQ(List("other"), "kept ");
        EXPECT_EQ(List("t"), left);
        EXPECT_EQ(List("t/sub"), leftBelow);
        EXPECT_FALSE(IsAt("t/sub/deep/'d\\ \xff'.tmp"));
        std::filesystem::remove_all(At("t"));
    }
}

TEST_F(ZVDeleteTreeTest, ALinkIsNeverEntered)
{
    Put("other/kept");
    Link("other", "link");
    for (const char* path : {"link", "link/", "link/././/"})
        EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt(path), true));
    EXPECT_TRUE(ZVFileSystem::DeleteDirectoryTree(TextAt("link/"), false));
    EXPECT_EQ(List() + List("other"), "other kept ");
}

TEST_F(ZVDeleteTreeTest, APathThatLeadsUpDeletesNothing)
{
    Put("t/a..b/file");
    Put("t../file");
    const auto expectRefused = [&](const std::string& path, const std::string& refused)
    {
        EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("") + ZVString::FromUTF8(path.c_str()), false));
        EXPECT_EQ(List() + List("t") + List("t/a..b"), "t t.. a..b file ");
        ExpectLogged("1|ZVFileSystem::DeleteDirectoryTree|REJECTING DELETE BECAUSE PATH=" + m_folder + refused);
        EXPECT_EQ(CountRefusals(Get("/var/tmp/lddebug"), m_folder + refused), 1);
    };
    for (const char* path : {"t/../t", "t/..", "t..", "t\\..\\t"})
        expectRefused(path, path);
    expectRefused("t", "t/a..b/");
}

TEST_F(ZVDeleteTreeTest, TheRootIsNeverDeletedHoweverItIsWritten)
{
    // In a root folder of its own, so that a broken guard only breaks this test.
    Put("kept");
    MakeFolder("var/tmp");
    const auto deleteRoot = [&]
    {
        if (chdir(m_folder.c_str()) != 0 || chroot(".") != 0)
            GTEST_SKIP() << "the root folder cannot be changed here";
        for (const wchar_t* path : {L"/", L"\\", L"//", L"/.", L"/./", L"/.//./", L"", L".", L"./", L"(Install Drive):/"})
            for (const bool keepRoot : {false, true})
                EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(path, keepRoot));
        const std::string refusals = Get("/var/tmp/lddebug");
        EXPECT_EQ(CountRefusals(refusals, "/"), 2);
        EXPECT_EQ(CountRefusals(refusals, ""), 2);
        // A pipe that nobody reads does not hold the guard up.
        ASSERT_TRUE(remove("/var/tmp/lddebug") == 0 && mkfifo("/var/tmp/lddebug", 0666) == 0);
        EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(L"/", false));
    };
    InChild(deleteRoot);
    EXPECT_EQ(List(), "kept var ");
}

TEST_F(ZVDeleteTreeTest, WhatCannotBeDeletedIsTold)
{
    Put("t/sub/file");
    EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("missing"), false));
    ExpectLogged("|Error 2 deleting folder: " + At("missing"));
    EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("t/sub/file"), false));
    ExpectLogged("|Error 20 deleting folder: ");
    chmod(At("t/sub").c_str(), 0555);
    const auto deleteLocked = [&]
    {
        for (const bool keepRoot : {false, true})
            EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("t"), keepRoot));
        ExpectLogged("|Error 13 deleting existing file: " + At("t/sub/file"));
    };
    AsNobody(deleteLocked);
    EXPECT_EQ(List("t/sub"), "file ");
}

TEST_F(ZVDeleteTreeTest, ANameThatLooksLikeAnOptionIsAName)
{
    Put("-i/file");
    const auto deleteIt = [&] { EXPECT_TRUE(chdir(m_folder.c_str()) == 0 && ZVFileSystem::DeleteDirectoryTree(L"-i", false)); };
    InChild(deleteIt);
    EXPECT_EQ(List(), "");
}
}
