#include "system/file/ZVFileSystem.h"

#include "FileFixture.h"
#include "contracts/IZVApplicationInformation.h"
#include "contracts/IZVSettings.h"
#include "system/file/ZVMountTable.h"
#include "system/file/ZVVolumeLabels.h"

#include <tuple>
#include <vector>

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
        EXPECT_TRUE(ZVFileSystem::MakeDirectoryTree(TextAt("") + path) && List("a/b/c").empty());
    Put("file");
    EXPECT_FALSE(ZVFileSystem::IsDirectoryWritable(L"") || ZVFileSystem::IsDirectoryWritable(TextAt("missing")));
    for (const ZVString& path : {ZVString(), TextAt("file/a"), ZVString(L"E:\\nowhere\\a")})
        EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(path, true));
    EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(TextAt("file/a")));
    EXPECT_THAT(m_tools.Manager.Lines,
                testing::ElementsAre("1|ZVFileSystem::MakeDirectoryTree|Error 20 making folder: " + At("file/a"),
                                     "1|ZVFileSystem::MakeDirectoryTree|Failed! Path=" + At("file/a")));
    chmod(At("a").c_str(), 0555);
    for (const char* path : {"a", "a/new"})
        AsNobody([&] { EXPECT_FALSE(ZVFileSystem::MakeDirectoryTree(TextAt(path))); });
    EXPECT_EQ(List("a"), "b ");
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
    EXPECT_EQ(List("new"), "x ");
}

TEST_F(ZVFileSystemTest, StatusTellsFilesFromFolders)
{
    const ZVString file = ZVNativePath::ToText(Put("file", "12345").c_str());
    const ZVString folder = TextAt("");
    const ZVString missing = TextAt("missing");
    EXPECT_EQ(ZVFileSystem::GetFileSize(file), 5);
    EXPECT_TRUE(ZVFileSystem::GetFileSize(folder) == -1 && ZVFileSystem::GetFileSize(missing) == -1);
    EXPECT_TRUE(ZVFileSystem::Exists(folder) && ZVFileSystem::IsDirectory(folder));
    EXPECT_FALSE(ZVFileSystem::IsDirectory(file) || ZVFileSystem::Exists(missing) || ZVFileSystem::DeleteFile(missing));
    EXPECT_TRUE(ZVFileSystem::SetFileAttributes(file, 0600) && ZVFileSystem::GetFileAttributes(file) == 0100600);
    EXPECT_TRUE(ZVFileSystem::SetFileAttributes(file, 0x2000) && ZVFileSystem::GetFileAttributes(file) == 0100644);
    EXPECT_EQ(Bytes(ZVFileSystem::GetProgramFilename()), std::filesystem::read_symlink("/proc/self/exe").string());
    EXPECT_FALSE(ZVFileSystem::GetComputerName().IsEmpty());
    int64_t total = -1;
    int64_t available = -1;
    EXPECT_TRUE(ZVFileSystem::ZVStatFS(folder, &total, nullptr, &available) && total > 0 && available <= total);
    EXPECT_FALSE(ZVFileSystem::ZVStatFS(missing, &total, nullptr, nullptr) || ZVFileSystem::SetFileAttributes(missing, 0600));
    ExpectLogged("1|ZVFileSystem::ZVStatFS|Error 2 asking for the space of: " + At("missing"));
    EXPECT_FALSE(ZVFileSystem::DeleteFile(folder));
    ExpectLogged("1|ZVFileSystem::DeleteFile|Error 21 deleting existing file: " + m_folder);
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
    EXPECT_TRUE(getTemp(true, true) == standard && IsAt("data/Temp") && !tools.Temp.IsEmpty());
    MakeFolder("temp");
    tools.Temp = TextAt("") + L"temp\\";
    EXPECT_EQ(getTemp(false, true) + getTemp(true, false), standard + At("temp/"));
    EXPECT_TRUE(getTemp(true, true) == At("temp/.zivora/") && std::filesystem::remove(At("temp/.zivora")));
    Put("temp/.zivora");
    EXPECT_TRUE(getTemp(true, true) == standard && tools.Temp.IsEmpty());
    EXPECT_EQ(Bytes(ZVFileSystem::GetUniqueFilename(L"", L"a", L"b")), standard + "a.b");
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
        EXPECT_EQ(get(Folder::Music) + get(Folder::Videos), At("\xc3\xa4/Musik \"\\ \xc3\xa4//films/"));
        EXPECT_EQ(get(Folder::Pictures) + get(Folder::Documents), At("\xc3\xa4/Images/") + At("\xc3\xa4/"));
        setenv("XDG_CONFIG_HOME", At("other").c_str(), 1);
        EXPECT_EQ(get(Folder::Videos), At("\xc3\xa4/Video/"));
    };
    InChild(checkFolders);
}

TEST_F(ZVFileSystemTest, SizesAreWrittenAndRead)
{
    std::string written;
    for (const int64_t size : {0l, 1023l, 1024l, 10240l, 0xfffffl, 0x100000l, 0x3fffffffl, 0x40000000l, 0xffffffffffl,
                               0x10000000000l, 0x3ffffffffffffl, 0x4000000000000l, -1536l, INT64_MIN})
        written += Bytes(ZVFileSystem::FormatFileSize(size)) + "|";
    EXPECT_EQ(written,
              "0 bytes|1023 bytes|1.0 KB|10 KB|1024 KB|1.0 MB|1024 MB|1.0 GB|1024 GB|1.0 TB|1024 TB|1.0 PB|-1.5 KB|-8192 PB|");
    std::vector<int64_t> read;
    for (const wchar_t* text : {L"", L"700", L"1.5 kb", L"2GB ", L"1 Tb of films", L"-1 pb", L"3 MB", L"9999 pb", L"-9999 pb"})
        read.push_back(ZVFileSystem::ParseFileSize(text));
    EXPECT_THAT(read, testing::ElementsAre(0, 700, 1536, 2l << 30, 1l << 40, -(1l << 50), 3, INT64_MAX, INT64_MIN));
}

TEST_F(ZVFileSystemTest, NewNamesAreUnique)
{
    const auto get = [this](const wchar_t* base, const wchar_t* extension)
    { return Bytes(ZVFileSystem::GetUniqueFilename(TextAt("f"), base, extension)); };
    Put("f/film.mkv");
    Link("nothing", "f/film - 1.mkv");
    EXPECT_EQ(get(L"film", L"mkv") + get(L"film", L""), At("f/film - 2.mkv") + At("f/film"));
    EXPECT_EQ(get(L"a/b\n\x7f", L"x\\y"), At("f/a_b__.x_y"));
}

TEST_F(ZVFileSystemTest, TheNewestFilesAreKept)
{
    const std::tuple<int32_t, int64_t, const char*> rows[] = {
        {-1, -1, "a1 b22 c333 d4444 sub "},
        {2,  -1, "b22 d4444 sub "        },
        {-1, 9,  "b22 c333 d4444 sub "   },
        {-1, 8,  "b22 d4444 sub "        },
        {1,  9,  "d4444 sub "            },
        {0,  -1, "sub "                  },
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
    const auto typeAt = [&](const wchar_t* path) { return Bytes(table.FindForPath(path)->FileSystemType); };
    EXPECT_EQ(typeAt(L"/mnt/a b/c") + typeAt(L"/mnt/a bc") + typeAt(L"/end"), "tmpfsext4nfs");
    EXPECT_EQ(ZVMountTable::Parse("").FindForPath(L"/"), nullptr);
}

TEST_F(ZVFileSystemTest, VolumesAreThoseOfTheMachine)
{
    if (GetAt("/proc/self/mountinfo").find(" /dev/shm ") == std::string::npos)
        GTEST_SKIP() << "/dev/shm is no file system of its own here";
    EXPECT_EQ(ZVFileSystem::GetDriveType(L"/dev/shm"), ZVFileSystem::DriveType::Memory);
    EXPECT_EQ(ZVFileSystem::GetDriveType(TextAt("missing")), ZVFileSystem::DriveType::Unknown);
    EXPECT_TRUE(ZVFileSystem::GetMountpointFromDevice(L"/dev/no 'such").IsEmpty());
    EXPECT_EQ(Bytes(ZVFileSystem::GetMountpointFromDevice(L"proc")), "/proc");
    int64_t size = 7;
    EXPECT_TRUE(!ZVFileSystem::GetVolumeInformation(L"/dev/shm", nullptr, &size) && size == 0);
    // Whatever drives this machine has, each is on a device with a size.
    ZVStringArray drives;
    ZVFileSystem::GetAvailableDrives(drives);
    for (const ZVString& drive : drives)
        EXPECT_TRUE(ZVFileSystem::GetVolumeInformation(drive, nullptr, &size) && size > 0) << Bytes(drive);
}

TEST_F(ZVFileSystemTest, VolumeLabelsAreTheNamesOfLinks)
{
    const auto find = [&](const char* device, const char* labels = "labels/")
    { return Bytes(ZVVolumeLabels::Find(TextAt(device), TextAt(labels))); };
    Put("one");
    MakeFolder("labels");
    Link("../nothing", "labels/A");
    Link("../one", "labels/.Films\\x20\\xc3\\xa4\\x2");
    EXPECT_EQ(find("one") + find("two") + find("one", "missing/"), ".Films \xc3\xa4/x2");
    ExpectLogged("|realpath Error 2: ");
}
}
