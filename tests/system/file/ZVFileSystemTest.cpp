#include "system/file/ZVFileSystem.h"

#include "FileFixture.h"
#include "system/file/ZVMountTable.h"

#include <tuple>

namespace
{
using ZVFileSystemTest = FileFixture;

TEST_F(ZVFileSystemTest, FoldersAreMadeAndTriedOut)
{
    for (const wchar_t* path : {L"a/b/c", L"a\\b\\c\\"})
        EXPECT_TRUE(ZVFileSystem::MakeDirectoryTree(TextAt("") + path));
    EXPECT_THAT(List("a/b/c"), IsEmpty()) << "the file with which it was tried out is left";
    Put("file");
    for (const ZVString& path : {ZVString(), TextAt("file/a"), ZVString(L"E:\\nowhere\\a")})
        EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(path, true)) << Bytes(path);
    EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(TextAt("file/a")));
    EXPECT_THAT(m_tools.Manager.Lines, ElementsAre("1|ZVFileSystem::MakeDirectoryTree|Error 20 making folder: " + At("file/a"),
                                                   "1|ZVFileSystem::MakeDirectoryTree|Failed! Path=" + At("file/a")));
    chmod(At("a").c_str(), 0555);
    for (const char* path : {"a", "a/new"})
        AsNobody([&] { EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(TextAt(path))) << path; });
}

TEST_F(ZVFileSystemTest, SizesAreWrittenAndRead)
{
    const std::pair<int64_t, const wchar_t*> written[] = {
        {1023,            L"1023 bytes"},
        {0xfffff,         L"1024 KB"   },
        {0x40000000,      L"1.0 GB"    },
        {0x4000000000000, L"1.0 PB"    },
        {-1536,           L"-1.5 KB"   },
        {INT64_MIN,       L"-8192 PB"  },
    };
    for (const auto& [size, text] : written)
        EXPECT_STREQ(ZVFileSystem::FormatFileSize(size), text);
    for (const auto& [text, size] : {
             std::pair(L"", 0l), {L"1.5 kb",        1536     },
               {L"1 Tb of films", 1l << 40 },
               {L"3 MB",          3        },
               {L"-9999 pb",      INT64_MIN}
    })
        EXPECT_EQ(ZVFileSystem::ParseFileSize(text), size) << Bytes(text);
}

TEST_F(ZVFileSystemTest, TheNewestFilesAreKept)
{
    const std::tuple<int32_t, int64_t, std::set<std::string>> rows[] = {
        {-1, -1, {"a1", "b22", "c333", "d4444", "sub"}},
        {2,  -1, {"b22", "d4444", "sub"}              },
        {-1, 9,  {"b22", "c333", "d4444", "sub"}      },
        {-1, 8,  {"b22", "d4444", "sub"}              },
        {1,  9,  {"d4444", "sub"}                     },
        {0,  -1, {"sub"}                              },
    };
    Put("p/sub/e");
    for (const auto& [keepCount, keepBytes, left] : rows)
    {
        // From the oldest to the newest, half a second apart.
        std::filesystem::file_time_type modified;
        for (const std::string name : {"a1", "c333", "b22", "d4444"})
            std::filesystem::last_write_time(Put("p/" + name, name.substr(1)), modified += std::chrono::milliseconds(500));
        EXPECT_TRUE(ZVFileSystem::PruneOldFilesFromDirectory(TextAt("p"), keepCount, keepBytes));
        EXPECT_EQ(List("p"), left);
    }
    Put("p/a");
    chmod(At("p").c_str(), 0555);
    AsNobody([&] { EXPECT_FALSE(ZVFileSystem::PruneOldFilesFromDirectory(TextAt("p"), 0, -1)); });
}

TEST_F(ZVFileSystemTest, TheMountTableIsRead)
{
    const ZVMountTable table =
        ZVMountTable::Parse("22 1 8:1 / / rw shared:1 - ext4 /dev/sda1 rw\n"
                            "30 22 8:2 /sub /mnt/a\\040b rw master:1 propagate_from:2 - vfat /dev/sd\\134b ro\n"
                            "31 30 0:5 / /mnt/a\\040b rw - tmpfs none rw\n"
                            "32 22 0:6 / /mnt/net\n\nshort\n33 22 0:7 / /end rw - nfs");
    ASSERT_EQ(table.GetMounts().GetCount(), 4);
    EXPECT_EQ(Bytes(table.GetMounts()[1].Device), "/dev/sd\\b");
    for (const auto& [path, type] : {
             std::pair(L"/mnt/a b/c", L"tmpfs"), {L"/mnt/a bc", L"ext4"},
               {L"/end",      L"nfs" }
    })
        EXPECT_STREQ(table.FindForPath(path)->FileSystemType, type) << Bytes(path);
    EXPECT_EQ(ZVMountTable::Parse("").FindForPath(L"/"), nullptr);
}
}
