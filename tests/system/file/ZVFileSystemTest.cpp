#include "system/file/ZVFileSystem.h"

#include "FileFixture.h"
#include "contracts/IZVApplicationInformation.h"
#include "contracts/IZVSettings.h"
#include "system/file/ZVMountTable.h"
#include "system/file/ZVVolumeLabels.h"

#include <tuple>

namespace
{
// Tools with one setting and a data folder.
class FolderTools final : public FakeTools, public IZVSettings, public IZVApplicationInformation
{
public:
    IZVSettings* GetSettings(bool create) override { return create ? this : nullptr; }
    IZVApplicationInformation* GetApplicationInformation() override { return this; }
    bool SetSetting(const wchar_t*, const wchar_t*, const wchar_t*) override { return false; }
    bool RemoveSetting(const wchar_t*, const wchar_t*) override { return (Temp = L"").IsEmpty(); }
    const wchar_t* GetProductName() override { return L""; }
    const wchar_t* GetInstallDirectory() override { return L""; }
    const wchar_t* GetDataDirectory() override { return Data; }

    bool GetSetting(const wchar_t* section, const wchar_t* name, IZVDllString& value) override
    {
        value.SetString(Temp, -1);
        return ZVString(section) == L"Properties" && ZVString(name) == L"File Location - Temp Location" && !Temp.IsEmpty();
    }

    ZVString Temp;
    ZVString Data;
};

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

TEST_F(ZVFileSystemTest, AFolderAfterTwoSlashesIsMade)
{
    const auto makeInRoot = [&]
    {
        if (chroot(m_folder.c_str()) != 0)
            GTEST_SKIP() << "the root folder cannot be changed here";
        EXPECT_TRUE(ZVFileSystem::MakeDirectoryTree(L"//new/x"));
    };
    InChild(makeInRoot);
    EXPECT_THAT(List("new"), ElementsAre("x"));
}

TEST_F(ZVFileSystemTest, TheFolderForTemporaryFilesIsThatOfTheSettingWhileItIsOfUse)
{
    FolderTools tools;
    tools.Data = TextAt("data");
    g_pZVTools = &tools;
    const auto getTemp = [](bool useSetting, bool addProductFolder)
    { return Bytes(ZVFileSystem::GetDirectoryTemp(useSetting, addProductFolder)); };
    const std::string standard = At("data/Temp/");
    tools.Temp = TextAt("missing");
    EXPECT_EQ(getTemp(true, true), standard);
    EXPECT_FALSE(tools.Temp.IsEmpty()) << "a setting without its folder is only passed over";
    MakeFolder("temp");
    tools.Temp = TextAt("") + L"temp\\";
    EXPECT_EQ(getTemp(false, true), standard);
    EXPECT_EQ(getTemp(true, false), At("temp/"));
    EXPECT_EQ(getTemp(true, true), At("temp/.zivora/"));
    std::filesystem::remove(At("temp/.zivora"));
    Put("temp/.zivora");
    EXPECT_EQ(getTemp(true, true), standard);
    EXPECT_STREQ(tools.Temp, L"") << "a setting with which it fails is removed";
}

TEST_F(ZVFileSystemTest, TheUsersFoldersAreThoseOfTheEnvironmentAndTheDesktop)
{
    using Folder = ZVFileSystem::UserFolder;
    const auto get = [](Folder folder) { return Bytes(ZVFileSystem::GetDirectoryUserFolder(folder)); };
    const auto checkFolders = [&]
    {
        unsetenv("HOME");
        EXPECT_TRUE(ZVFileSystem::GetDirectoryHome().EndsWith(L'/'));
        setenv("HOME", At("\xc3\xa4").c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryAppData()), At("\xc3\xa4/.zivora/Generic/"));
        Put("\xc3\xa4/.config/user-dirs.dirs",
            "# XDG_MUSIC_DIR=\"/wrong\"\nXDG_MUSIC_DIR=\"$HOME/Musik \\\"\\\\ \xc3\xa4\"\n"
            "  XDG_VIDEOS_DIR=/films \r\nXDG_PICTURES_DIR=\"$HOMES/a\"\nXDG_DOCUMENTS_DIR=\"$HOME\"");
        EXPECT_EQ(get(Folder::Music), At("\xc3\xa4/Musik \"\\ \xc3\xa4/"));
        EXPECT_EQ(get(Folder::Videos), "/films/");
        EXPECT_EQ(get(Folder::Pictures), At("\xc3\xa4/Images/"));
        EXPECT_EQ(get(Folder::Documents), At("\xc3\xa4/"));
        setenv("XDG_CONFIG_HOME", At("other").c_str(), 1);
        EXPECT_EQ(get(Folder::Videos), At("\xc3\xa4/Video/"));
    };
    InChild(checkFolders);
}

TEST_F(ZVFileSystemTest, SizesAreWrittenAndRead)
{
    const std::pair<int64_t, const wchar_t*> written[] = {
        {1023,            L"1023 bytes"},
        {1024,            L"1.0 KB"    },
        {10240,           L"10 KB"     },
        {0xfffff,         L"1024 KB"   },
        {0x100000,        L"1.0 MB"    },
        {0x40000000,      L"1.0 GB"    },
        {0x10000000000,   L"1.0 TB"    },
        {0x4000000000000, L"1.0 PB"    },
        {-1536,           L"-1.5 KB"   },
        {INT64_MIN,       L"-8192 PB"  },
    };
    for (const auto& [size, text] : written)
        EXPECT_STREQ(ZVFileSystem::FormatFileSize(size), text);
    const std::pair<const wchar_t*, int64_t> read[] = {
        {L"",              0          },
        {L"700",           700        },
        {L"1.5 kb",        1536       },
        {L"1 Tb of films", 1l << 40   },
        {L"-1 pb",         -(1l << 50)},
        {L"3 MB",          3          },
        {L"9999 pb",       INT64_MAX  },
        {L"-9999 pb",      INT64_MIN  },
    };
    for (const auto& [text, size] : read)
        EXPECT_EQ(ZVFileSystem::ParseFileSize(text), size) << Bytes(text);
}

TEST_F(ZVFileSystemTest, NewNamesAreUnique)
{
    const auto get = [this](const wchar_t* base, const wchar_t* extension)
    { return Bytes(ZVFileSystem::GetUniqueFilename(TextAt("f"), base, extension)); };
    Put("f/film.mkv");
    Link("nothing", "f/film - 1.mkv");
    EXPECT_EQ(get(L"film", L"mkv"), At("f/film - 2.mkv"));
    EXPECT_EQ(get(L"film", L""), At("f/film"));
    EXPECT_EQ(get(L"a/b\n\x7f", L"x\\y"), At("f/a_b__.x_y"));
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

TEST_F(ZVFileSystemTest, VolumesAreThoseOfTheMachine)
{
    EXPECT_STREQ(ZVFileSystem::GetMountpointFromDevice(L"proc"), L"/proc");
    EXPECT_STREQ(ZVFileSystem::GetMountpointFromDevice(L"/dev/no 'such"), L"");
    EXPECT_EQ(ZVFileSystem::GetDriveType(TextAt("missing")), ZVFileSystem::DriveType::Unknown);
    WithSmallDisk([&] { EXPECT_EQ(ZVFileSystem::GetDriveType(TextAt("disk")), ZVFileSystem::DriveType::Memory); });
    // Whatever drives this machine has, each is on a device with a size.
    ZVStringArray drives;
    ZVFileSystem::GetAvailableDrives(drives);
    for (const ZVString& drive : drives)
    {
        int64_t size = 0;
        EXPECT_TRUE(ZVFileSystem::GetVolumeInformation(drive, nullptr, &size)) << Bytes(drive);
        EXPECT_GT(size, 0) << Bytes(drive);
    }
}

TEST_F(ZVFileSystemTest, VolumeLabelsAreTheNamesOfLinks)
{
    Put("one");
    MakeFolder("labels");
    Link("../nothing", "labels/A");
    Link("../one", "labels/.Films\\x20\\xc3\\xa4\\x2");
    EXPECT_EQ(Bytes(ZVVolumeLabels::Find(TextAt("one"), TextAt("labels/"))), ".Films \xc3\xa4/x2");
    EXPECT_EQ(Bytes(ZVVolumeLabels::Find(TextAt("two"), TextAt("labels/"))), "");
    ExpectLogged("|realpath Error 2: ");
}
}
