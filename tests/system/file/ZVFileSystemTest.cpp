#include "system/file/ZVFileSystem.h"

#include "FileFixture.h"
#include "contracts/IZVApplicationInformation.h"
#include "contracts/IZVSettings.h"
#include "system/file/ZVMountTable.h"
#include "system/file/ZVVolumeLabels.h"

#include <cstring>
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
        if (wcscmp(section, L"Properties") == 0 && wcscmp(name, L"File Location - Temp Location") == 0)
            value.SetString(Temp, -1);
        return !Temp.IsEmpty();
    }

    ZVString Temp;
    ZVString Data;
};

using ZVFileSystemTest = FileFixture;

TEST_F(ZVFileSystemTest, FoldersAreMadeAndTriedOut)
{
    EXPECT_TRUE(ZVFileSystem::MakeDirectoryTree(TextAt("a/b/c")));
    EXPECT_TRUE(ZVFileSystem::MakeDirectoryTree(TextAt("") + L"a\\b\\c\\"));
    EXPECT_EQ(List("a/b/c"), "");
    Put("file");
    EXPECT_FALSE(ZVFileSystem::IsDirectoryWritable(L"") || ZVFileSystem::IsDirectoryWritable(TextAt("missing")));
    for (const ZVString& path : {ZVString(), TextAt("file/a"), ZVString(L"E:\\nowhere\\a")})
        EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(path, true));
    EXPECT_TRUE(m_tools.Manager.Lines.empty());
    EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(TextAt("file/a")));
    EXPECT_THAT(m_tools.Manager.Lines,
                testing::ElementsAre("1|ZVFileSystem::MakeDirectoryTree|Error 20 making folder: " + At("file/a"),
                                     "1|ZVFileSystem::MakeDirectoryTree|Failed! Path=" + At("file/a")));
    chmod(At("a").c_str(), 0555);
    for (const char* path : {"a", "a/new"})
        EXPECT_TRUE(AsNobody([&] { EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(TextAt(path))); }));
    EXPECT_EQ(List("a"), "b ");
}

TEST_F(ZVFileSystemTest, StatusTellsFilesFromFolders)
{
    Put("file", "12345");
    MakeFolder("folder");
    const ZVString file = TextAt("file");
    const ZVString folder = TextAt("folder");
    const ZVString missing = TextAt("missing");
    EXPECT_EQ(ZVFileSystem::GetFileSize(file), 5);
    EXPECT_EQ(ZVFileSystem::GetFileSize(folder), -1);
    EXPECT_EQ(ZVFileSystem::GetFileSize(missing), -1);
    EXPECT_TRUE(ZVFileSystem::Exists(folder) && ZVFileSystem::IsDirectory(folder));
    EXPECT_FALSE(ZVFileSystem::IsDirectory(file) || ZVFileSystem::Exists(missing) || ZVFileSystem::DeleteFile(missing));
    EXPECT_TRUE(ZVFileSystem::SetFileAttributes(file, 0600));
    EXPECT_EQ(ZVFileSystem::GetFileAttributes(file), 0100600U);
    EXPECT_TRUE(ZVFileSystem::SetFileAttributes(file, 0x2000));
    EXPECT_EQ(ZVFileSystem::GetFileAttributes(file), 0100644U);
    EXPECT_EQ(ZVFileSystem::GetFileAttributes(missing), ZVFileSystem::NoAttributes);
    int64_t total = -1;
    int64_t available = -1;
    EXPECT_TRUE(ZVFileSystem::ZVStatFS(folder, &total, nullptr, &available));
    EXPECT_TRUE(total > 0 && available <= total);
    EXPECT_TRUE(m_tools.Manager.Lines.empty());

    EXPECT_FALSE(ZVFileSystem::ZVStatFS(missing, &total, nullptr, nullptr) || ZVFileSystem::SetFileAttributes(missing, 0600));
    EXPECT_EQ(m_tools.Manager.Lines.size(), 2U);
    EXPECT_FALSE(ZVFileSystem::DeleteFile(folder));
    ExpectLogged("1|ZVFileSystem::DeleteFile|Error 21 deleting existing file: " + At("folder"));
}

TEST_F(ZVFileSystemTest, HomeAndDataFoldersEndInASlash)
{
    const auto checkFolders = []
    {
        setenv("HOME", "/home/\xc3\xa4", 1);
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryHome()), "/home/\xc3\xa4/");
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryAppData()), "/home/\xc3\xa4/.zivora/Generic/");
        setenv("HOME", "/", 1);
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryHome()), "/");
        unsetenv("HOME");
        EXPECT_TRUE(ZVFileSystem::GetDirectoryHome().EndsWith(L'/'));
    };
    EXPECT_TRUE(InChild(checkFolders));
    FolderTools tools;
    tools.Data = L"/data";
    g_pZVTools = &tools;
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryAppData()), "/data/");
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryInstall()), "/usr/lib/zivora/Lantern Deck 33/");
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryWorking()), std::filesystem::current_path().string() + "/");
    EXPECT_EQ(Bytes(ZVFileSystem::GetProgramFilename()), std::filesystem::read_symlink("/proc/self/exe").string());
    EXPECT_FALSE(ZVFileSystem::GetComputerName().IsEmpty());
}

TEST_F(ZVFileSystemTest, TheFolderForTemporaryFilesIsThatOfTheSettingWhileItIsOfUse)
{
    FolderTools tools;
    tools.Data = TextAt("data");
    g_pZVTools = &tools;
    const std::string standard = At("data/Temp/");
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryTemp(true, true)), standard);
    EXPECT_TRUE(IsAt("data/Temp"));
    tools.Temp = TextAt("missing");
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryTemp(true, true)), standard);
    EXPECT_FALSE(tools.Temp.IsEmpty());

    MakeFolder("temp");
    tools.Temp = TextAt("temp");
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryTemp(false, true)), standard);
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryTemp(true, false)), At("temp/"));
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryTemp(true, true)), At("temp/.zivora/"));
    EXPECT_EQ(List("temp"), ".zivora ");
    std::filesystem::remove(At("temp/.zivora"));
    Put("temp/.zivora");
    EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryTemp(true, true)), standard);
    EXPECT_TRUE(tools.Temp.IsEmpty());
}

TEST_F(ZVFileSystemTest, UserFoldersAreThoseOfTheDesktop)
{
    using Folder = ZVFileSystem::UserFolder;
    const auto checkFolders = [this]
    {
        setenv("HOME", m_folder.c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryUserFolder(Folder::Documents)), At("Documents/"));
        EXPECT_TRUE(m_tools.Manager.Lines.empty());
        Put(".config/user-dirs.dirs", "# XDG_MUSIC_DIR=\"/wrong\"\nXDG_MUSIC_DIR=\"$HOME/Musik \\\"\\\\ \xc3\xa4\"\n"
                                      "  XDG_VIDEOS_DIR=/films \r\nXDG_PICTURES_DIR=\"relative\"\nXDG_DOCUMENTS_DIR=\"$HOME/\"");
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryUserFolder(Folder::Music)), At("Musik \"\\ \xc3\xa4/"));
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryUserFolder(Folder::Videos)), "/films/");
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryUserFolder(Folder::Pictures)), At("Images/"));
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryUserFolder(Folder::Documents)), m_folder);
        setenv("XDG_CONFIG_HOME", At("other").c_str(), 1);
        EXPECT_EQ(Bytes(ZVFileSystem::GetDirectoryUserFolder(Folder::Videos)), At("Video/"));
    };
    EXPECT_TRUE(InChild(checkFolders));
}

TEST_F(ZVFileSystemTest, SizesAreWrittenAndRead)
{
    const std::pair<int64_t, const char*> written[] = {
        {0,               "0 bytes"   },
        {1023,            "1023 bytes"},
        {-1,              "-1 bytes"  },
        {1024,            "1.0 KB"    },
        {-1536,           "-1.5 KB"   },
        {10 * 1024,       "10 KB"     },
        {0xfffff,         "1024 KB"   },
        {0x100000,        "1.0 MB"    },
        {0x3fffffff,      "1024 MB"   },
        {0x40000000,      "1.0 GB"    },
        {0x10000000000,   "1.0 TB"    },
        {0x3ffffffffffff, "1024 TB"   },
        {0x4000000000000, "1.0 PB"    },
        {INT64_MIN,       "-8192 PB"  },
    };
    for (const auto& [size, text] : written)
        EXPECT_EQ(Bytes(ZVFileSystem::FormatFileSize(size)), text);
    const std::pair<const wchar_t*, int64_t> read[] = {
        {L"",              0                   },
        {L"700",           700                 },
        {L"1.5 kb",        1536                },
        {L"2GB",           int64_t {2} << 30   },
        {L"1 Tb of films", int64_t {1} << 40   },
        {L"-1 pb",         -(int64_t {1} << 50)},
        {L"3 MB",          3                   },
        {L"9999 pb",       INT64_MAX           },
        {L"-9999 pb",      INT64_MIN           },
    };
    for (const auto& [text, size] : read)
        EXPECT_EQ(ZVFileSystem::ParseFileSize(text), size) << Bytes(text);
}

TEST_F(ZVFileSystemTest, NewNamesAreUnique)
{
    const ZVString folder = TextAt("").Left(TextAt("").GetLength() - 1);
    EXPECT_EQ(Bytes(ZVFileSystem::GetUniqueFilename(folder, L"a/b\n\x7f", L"x\\y")), At("a_b__.x_y"));
    Put("film.mkv");
    EXPECT_EQ(Bytes(ZVFileSystem::GetUniqueFilename(folder, L"film", L"mkv")), At("film - 1.mkv"));
    Link("nothing", "film - 1.mkv");
    EXPECT_EQ(Bytes(ZVFileSystem::GetUniqueFilename(folder, L"film", L"mkv")), At("film - 2.mkv"));
    EXPECT_EQ(Bytes(ZVFileSystem::GetUniqueFilename(folder, L"film", L"")), At("film"));
    FolderTools tools;
    tools.Data = TextAt("");
    g_pZVTools = &tools;
    EXPECT_EQ(Bytes(ZVFileSystem::GetUniqueFilename(L"", L"a", L"b")), At("Temp/a.b"));
}

TEST_F(ZVFileSystemTest, TheNewestFilesAreKept)
{
    // The limits, and what is left: from the newest on d has 4 bytes, b 2, c 3 and a 1.
    const std::tuple<int32_t, int64_t, const char*> rows[] = {
        {-1, -1, "a b c d sub "},
        {2,  -1, "b d sub "    },
        {9,  -1, "a b c d sub "},
        {0,  -1, "sub "        },
        {-1, 9,  "b c d sub "  },
        {-1, 8,  "b d sub "    },
        {-1, 3,  "sub "        },
        {1,  9,  "d sub "      },
    };
    for (const auto& [keepCount, keepBytes, left] : rows)
    {
        int64_t time = 1000;
        for (const auto& [name, content] : {
                 std::pair("p/a", "1"), {"p/c",     "333" },
                   {"p/b",     "22"  },
                   {"p/d",     "4444"},
                   {"p/sub/e", ""    }
        })
        {
            const timespec times[2] = {
                {time, 0  },
                {time, 500}
            };
            utimensat(AT_FDCWD, Put(name, content).c_str(), times, 0);
            time += 1;
        }
        EXPECT_TRUE(ZVFileSystem::PruneOldFilesFromDirectory(TextAt("p"), keepCount, keepBytes));
        EXPECT_EQ(List("p"), left);
    }
    chmod(At("p").c_str(), 0555);
    EXPECT_TRUE(AsNobody([&] { EXPECT_FALSE(ZVFileSystem::PruneOldFilesFromDirectory(TextAt("p"), 0, -1)); }));
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
    const auto typeAt = [&](const wchar_t* path) { return Bytes(table.FindForPath(path)->FileSystemType); };
    EXPECT_EQ(typeAt(L"/mnt/a b/c"), "tmpfs");
    EXPECT_EQ(typeAt(L"/mnt/a bc"), "ext4");
    EXPECT_EQ(typeAt(L"/end"), "nfs");
    EXPECT_EQ(ZVMountTable::Parse("").FindForPath(L"/"), nullptr);
}

TEST_F(ZVFileSystemTest, VolumesAreThoseOfTheMachine)
{
    EXPECT_EQ(ZVFileSystem::GetDriveType(L"/dev/shm"), ZVFileSystem::DriveType::Memory);
    EXPECT_EQ(ZVFileSystem::GetDriveType(TextAt("missing")), ZVFileSystem::DriveType::Unknown);
    EXPECT_EQ(Bytes(ZVFileSystem::GetMountpointFromDevice(L"/dev/no 'such")), "");
    EXPECT_EQ(Bytes(ZVFileSystem::GetMountpointFromDevice(L"proc")), "/proc");
    ZVString label = L"old";
    int64_t size = 7;
    EXPECT_FALSE(ZVFileSystem::GetVolumeInformation(L"/dev/shm", &label, &size));
    EXPECT_TRUE(label.IsEmpty() && size == 0);
    // Whatever drives this machine has, each is on a device with a size.
    ZVStringArray drives;
    ZVFileSystem::GetAvailableDrives(drives);
    for (const ZVString& drive : drives)
        EXPECT_TRUE(ZVFileSystem::GetVolumeInformation(drive, &label, &size) && size > 0) << Bytes(drive);
}

TEST_F(ZVFileSystemTest, VolumeLabelsAreTheNamesOfLinks)
{
    Put("device");
    mkdir(At("labels").c_str(), 0777);
    for (const auto& [target, name] : {
             std::pair("../nothing", "A"), {"../device", "Films\\x20\\xc3\\xa4\\x2"}
    })
        symlink(target, At("labels/" + std::string(name)).c_str());
    EXPECT_EQ(Bytes(ZVVolumeLabels::Find(TextAt("device"), TextAt("labels/"))), "Films \xc3\xa4/x2");
    EXPECT_EQ(Bytes(ZVVolumeLabels::Find(TextAt("other"), TextAt("labels/"))), "");
    ExpectLogged("|realpath Error 2: ");
    EXPECT_EQ(Bytes(ZVVolumeLabels::Find(TextAt("device"), TextAt("missing/"))), "");
}
}
