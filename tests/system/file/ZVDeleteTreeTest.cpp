#include "FileFixture.h"
#include "system/file/ZVFileSystem.h"

#include <tuple>

namespace
{
using ZVDeleteTreeTest = FileFixture;

constexpr char RefusalFile[] = "/var/tmp/lddebug";
const std::string Refusal = "REJECTING DELETE BECAUSE PATH=";

TEST_F(ZVDeleteTreeTest, DeletesWhatItIsTold)
{
    using Names = std::set<std::string>;
    // Whether the root is kept, the filter, and what is left in the folder and in the one below.
    const std::tuple<bool, const wchar_t*, Names, Names> rows[] = {
        {true,  L"",    {".hidden"},                                              {"(none)"}             },
        {true,  L"TMP", {".hidden", "b.mkv", "dangling", "empty", "link", "sub"}, {".x", "c.mkv", "deep"}},
        {false, L"tmp", {"(none)"},                                               {"(none)"}             },
    };
    for (const auto& [keepRoot, filter, left, leftBelow] : rows)
    {
        SCOPED_TRACE(Bytes(filter));
        Put("other/kept");
        for (const char* name : {"t/a.tmp", "t/b.mkv", "t/.hidden", "t/sub/.x", "t/sub/c.mkv", "t/sub/deep/'d\\ \xff'.tmp"})
            Put(name);
        MakeFolder("t/empty");
        Link("../other", "t/link");
        Link("nothing", "t/dangling");
        EXPECT_TRUE(ZVFileSystem::DeleteDirectoryTree(TextAt("t/"), keepRoot, filter));
        EXPECT_EQ(List("t"), left);
        EXPECT_EQ(List("t/sub"), leftBelow);
        EXPECT_THAT(List("other"), ElementsAre("kept"));
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
    EXPECT_THAT(List(), ElementsAre("other"));
    EXPECT_THAT(List("other"), ElementsAre("kept"));
    // A name that looks like an option is a name all the same.
    Put("-i/file");
    const auto deleteHere = [&]
    {
        ASSERT_EQ(chdir(m_folder.c_str()), 0);
        EXPECT_TRUE(ZVFileSystem::DeleteDirectoryTree(L"-i", false));
    };
    InChild(deleteHere);
}

TEST_F(ZVDeleteTreeTest, APathThatLeadsUpDeletesNothing)
{
    Put("t/a..b/file");
    Put("t../file");
    // The last is refused only where the walk meets it.
    for (const std::string path : {"t/../t", "t/..", "t..", "t\\..\\t", "t"})
    {
        const std::string refused = m_folder + (path == "t" ? "t/a..b/" : path);
        EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(TextAt("") + ZVString::FromUTF8(path.c_str()), false));
        EXPECT_THAT(List(), ElementsAre("t", "t.."));
        EXPECT_THAT(List("t/a..b"), ElementsAre("file"));
        ExpectLogged("1|ZVFileSystem::DeleteDirectoryTree|" + Refusal + refused);
        EXPECT_THAT(GetAt(RefusalFile), testing::HasSubstr(Refusal + refused + "\n"));
    }
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
        std::string refusals;
        for (const std::string path : {"/", "\\", "//", "/.", "/./", "/.//./", "", ".", "./", "(Install Drive):/"})
            for (const bool keepRoot : {false, true})
            {
                EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(ZVString::FromUTF8(path.c_str()), keepRoot));
                EXPECT_EQ(GetAt(RefusalFile), refusals += Refusal + path + "\n");
            }
        // A pipe that nobody reads does not hold the guard up.
        ASSERT_EQ(remove(RefusalFile), 0);
        ASSERT_EQ(mkfifo(RefusalFile, 0666), 0);
        EXPECT_FALSE(ZVFileSystem::DeleteDirectoryTree(L"/", false));
    };
    InChild(deleteRoot);
    EXPECT_THAT(List(), ElementsAre("kept", "var"));
}
}
