#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"

#include <fcntl.h>
#include <tuple>

namespace
{
using ZVDeleteTreeTest = FileFixture;

constexpr char RefusalFile[] = "/var/tmp/lddebug";

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
    EXPECT_EQ(List("other"), "kept ");
    EXPECT_TRUE(ZVFileSystem::DeleteDirectoryTree(TextAt("link/"), false));
    EXPECT_EQ(List(), "other ");
    EXPECT_EQ(List("other"), "kept ");
}

TEST_F(ZVDeleteTreeTest, APathThatLeadsUpDeletesNothing)
{
    for (const char* path : {"t/../t", "t/..", "t..", "t\\..\\t"})
    {
        SCOPED_TRACE(path);
        Put("t/file");
        Put("t../file");
        const ZVString text = ZVNativePath::ToText(m_folder.c_str()) + ZVString::FromUTF8(path);
        EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(text, false));
        EXPECT_EQ(List(), "t t.. ");
        ExpectLogged("1|ZVFileSystem::DeleteDirectoryTree|REJECTING DELETE BECAUSE PATH=" + m_folder + path);
        EXPECT_EQ(CountRefusals(Get(RefusalFile), m_folder + path), 1);
    }
}

TEST_F(ZVDeleteTreeTest, TheGuardHoldsBelowToo)
{
    Put("t/a..b/file");
    Put("t/other/file");
    EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("t"), false));
    EXPECT_EQ(List("t"), "a..b ");
    EXPECT_EQ(List("t/a..b"), "file ");
    EXPECT_EQ(CountRefusals(Get(RefusalFile), At("t/a..b/")), 1);
}

TEST_F(ZVDeleteTreeTest, TheRootIsNeverDeletedHoweverItIsWritten)
{
    // In a root folder of its own, so that a broken guard only breaks this test.
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can change the root folder";
    Put("root/kept");
    MakeFolder("root/var/tmp");
    const int workingFolder = open(At("root").c_str(), O_PATH);
    EXPECT_TRUE(InChild(
        [&]
        {
            ASSERT_TRUE(fchdir(workingFolder) == 0 && chroot(".") == 0);
            for (const wchar_t* path : {L"/", L"\\", L"//", L"/.", L"/./", L"/.//./", L"", L".", L"./", L"(Install Drive):/"})
                for (const bool keepRoot : {false, true})
                    EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(path, keepRoot));
        }));
    close(workingFolder);
    EXPECT_EQ(List("root"), "kept var ");
    EXPECT_EQ(CountRefusals(GetAt("root/var/tmp/lddebug"), "/"), 2);
    EXPECT_EQ(CountRefusals(GetAt("root/var/tmp/lddebug"), ""), 2);
}

TEST_F(ZVDeleteTreeTest, WhatCannotBeDeletedIsTold)
{
    Put("t/sub/file");
    EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("missing"), false));
    ExpectLogged("|Error 2 deleting folder: " + At("missing"));
    EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("t/sub/file"), false));
    ExpectLogged("|Error 20 deleting folder: ");
    EXPECT_EQ(List("t/sub"), "file ");
    chmod(At("t/sub").c_str(), 0555);
    const auto deleteLocked = [&]
    {
        for (const bool keepRoot : {false, true})
            EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("t"), keepRoot));
        ExpectLogged("|Error 13 deleting existing file: " + At("t/sub/file"));
    };
    EXPECT_TRUE(AsNobody(deleteLocked));
    EXPECT_EQ(List("t/sub"), "file ");
}

TEST_F(ZVDeleteTreeTest, ANameThatLooksLikeAnOptionIsAName)
{
    Put("work/-i/file");
    EXPECT_TRUE(InChild(
        [&]
        {
            ASSERT_EQ(chdir(At("work").c_str()), 0);
            EXPECT_TRUE(ZVFileSystem::DeleteDirectoryTree(L"-i", false));
        }));
    EXPECT_EQ(List("work"), "");
}
}
