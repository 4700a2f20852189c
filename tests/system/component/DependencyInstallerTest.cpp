#include "system/component/DependencyInstaller.h"

#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/string/ZVStringUTF8.h"
#include "system/file/ZVFileSystem.h"
#include "system/library/ZVDescriptor.h"
#include "system/loader/LoaderFixture.h"
#include "system/log/CLogToStringItem.h"

#include <gmock/gmock.h>

#include <clocale>
#include <fcntl.h>
#include <future>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::HasSubstr;

// A component of which one version is kept, by its generic number and by that of this platform.
constexpr int32_t Downloader = 23;
constexpr int32_t MappedDownloader = 47;
constexpr int32_t Encoder = 38;   // packed as a zip file
constexpr int32_t Renderer = 13;  // whose users have files of their own in its folder
constexpr int32_t Decoders = 36;  // whose versions all stay, with the files that no package replaces
constexpr char Folder[] = "Plugins/linux_youtube-dl_v8";
constexpr char MainFile[] = "Plugins/linux_youtube-dl_v8/yt-dlp";
constexpr char OlderMainFile[] = "Plugins/linux_youtube-dl_v7/yt-dlp";
constexpr char ArchiveTarget[] = "/packages/linux_youtube-dl_v8.tar.xz";
constexpr char ChecksumTarget[] = "/packages/linux_youtube-dl_v8.tar.xz.sha256";

class DependencyInstallerTest : public LoaderFixture
{
protected:
    DependencyInstallerTest() { SetServer(ZVStringUTF8(m_server.GetURL("/packages")).Get()); }
    ~DependencyInstallerTest() override
    {
        unsetenv("ZV_COMPONENT_SERVER");
        ForgetInstallation();
    }

    static void SetServer(const std::string& address) { setenv("ZV_COMPONENT_SERVER", address.c_str(), 1); }
    static void ForgetInstallation() { g_pZVTools->GetSettings(true)->RemoveSetting(L"Dependencies", L"47"); }

    // Runs a shell script in an empty folder and returns what it writes to "../result".
    std::string MakeResult(const std::string& script) const
    {
        fs::create_directories(m_folder + "content");
        EXPECT_EQ(system(("cd '" + m_folder + "content' && " + script).c_str()), 0) << script;
        const std::string result = Get("result");
        fs::remove_all(m_folder + "content");
        fs::remove(m_folder + "result");
        return result;
    }

    // The archive of a component, in which the names are marked as UTF-8.
    std::string MakeDownloader() const
    {
        return MakeResult("echo new > yt-dlp && chmod 4777 yt-dlp && mkdir sub && ln -s ../yt-dlp sub/\u65e5\u672c && "
                          "ln yt-dlp hard && tar --format=pax -cf ../result *");
    }

    std::string ChecksumOf(const std::string& bytes) const
    {
        Put("content/bytes", bytes);
        return MakeResult("sha256sum < bytes > ../result");
    }

    // Makes a folder with one package the server.
    void ServeFromFolder(const std::string& archive, const std::string& bytes) const
    {
        Put("server/" + archive, bytes);
        SetServer("file://" + m_folder + "server");
    }

    std::vector<std::string> ListPlugins() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder + "Plugins"))
            names.push_back(entry.path().filename());
        return names;
    }

    bool IsTempEmpty() const { return !fs::exists(m_folder + "Temp") || fs::is_empty(m_folder + "Temp"); }

    std::string GetLog() const { return ZVStringUTF8(m_log.GetLines().GetJoined(L"\n")).Get(); }

    CLogToStringItem m_log {UINT32_MAX};
};

TEST_F(DependencyInstallerTest, InstallsWhatIsMissing)
{
    const std::string archive = MakeDownloader();
    m_server.SetAnswer(ArchiveTarget, {.Body = archive});
    m_server.SetAnswer(ChecksumTarget, {.Body = "\xef\xbb\xbf" + ChecksumOf(archive)});
    Put(OlderMainFile, "older");
    Put("Plugins/linux_youtube-dl-other_v7/yt-dlp", "other");
    umask(022);
    ASSERT_STREQ(setlocale(LC_CTYPE, nullptr), "C") << "in which UTF-8 has no meaning";

    const ZVString expected = TextAt(MainFile);
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), expected) << GetLog();
    for (const char* file : {"/yt-dlp", "/sub/\u65e5\u672c", "/hard"})
        EXPECT_EQ(Get(std::string(Folder) + file), "new\n");
    EXPECT_EQ(static_cast<int>(fs::status(m_folder + MainFile).permissions()), 0755);
    EXPECT_THAT(ListPlugins(), testing::UnorderedElementsAre("linux_youtube-dl_v8", "linux_youtube-dl-other_v7"));
    EXPECT_THAT(GetLog(), HasSubstr("Dependency 'YouTube Downloader' (23) is missing, installing"));
    EXPECT_THAT(GetLog(), testing::Not(HasSubstr("has no checksum")));
    EXPECT_TRUE(IsTempEmpty());

    // It is there now, so the server is not asked again, not even when another process has installed it.
    unsetenv("ZV_COMPONENT_SERVER");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(MappedDownloader, false), expected);
    ForgetInstallation();
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), expected);
}

TEST_F(DependencyInstallerTest, InstallsTheDecodersAsTheyArePacked)
{
    const std::string component = ZV_CODEC_COMPONENT;
    if (component.empty() || !fs::exists(component + ".tar.xz"))
        GTEST_SKIP() << "the codec component is not built, or the system's own libraries are used";
    SetServer(fs::path(component).parent_path());
    ASSERT_TRUE(DependencyInstaller::Install(15)) << GetLog();
    EXPECT_EQ(DependencyInstaller::GetFolder(15), TextAt("Plugins/linux_avcodec64_v17/"));
    EXPECT_EQ(system(("diff -r '" + component + "' '" + m_folder + "Plugins/linux_avcodec64_v17'").c_str()), 0);
}

TEST_F(DependencyInstallerTest, RefusesAZipFileWhoseDirectoryIsCut)
{
    if (system("command -v zip > /dev/null") != 0)
        GTEST_SKIP() << "zip is not installed";
    const std::string archive = MakeResult("echo new > lame && zip -qr ../result.zip . && mv ../result.zip ../result");
    ServeFromFolder("linux_mp3_encoder64_v1.zip", archive);
    EXPECT_TRUE(DependencyInstaller::Install(Encoder)) << GetLog();

    const size_t directory = archive.find("PK\1\2");
    for (const size_t size : {directory, directory + 50, archive.size() - 1})
    {
        const size_t logged = GetLog().size();
        Put("server/linux_mp3_encoder64_v1.zip", archive.substr(0, size));
        EXPECT_FALSE(DependencyInstaller::Install(Encoder)) << size;
        EXPECT_THAT(GetLog().substr(logged), HasSubstr("it is damaged"));
    }
    EXPECT_EQ(Get("Plugins/linux_mp3_encoder64_v1/lame"), "new\n");
}

TEST_F(DependencyInstallerTest, LeavesWhatIsThereWhenThePackageIsBad)
{
    const std::string good = MakeDownloader();
    const ZVTestAnswer none {.Status = 404};
    const ZVTestAnswer whole {.Body = good};
    const auto script = [this](const std::string& text) { return ZVTestAnswer {.Body = MakeResult(text)}; };
    // clang-format off
    const struct
    {
        const char* Reason;
        ZVTestAnswer Archive;
        ZVTestAnswer Checksum;
    } rows[] = {
        {"Downloading package failed", none, none},
        {"bytes remaining to read", {.Body = good, .CutAfter = 0}, none},
        {"it is damaged", {.Body = good.substr(0, 700)}, none},
        {"is not the one that its checksum tells of", whole, {.Body = ChecksumOf("x")}},
        {"is not the one that its checksum tells of", whole, {.Body = " "}},
        {"is not the one that its checksum tells of", whole, {.Body = ChecksumOf(good).substr(0, 64) + "0"}},
        {"did not load", whole, {.Status = 500}},
        {"it is empty", script("tar cf ../result -T /dev/null"), none},
        {"the name leaves the folder", script("touch x && tar cPf ../result --transform s,^,/tmp/, x"), none},
        {"neither a file", script("mkfifo pipe && tar cf ../result pipe"), none},
        {"the name is there twice", script("touch yt-dlp && tar cf ../result yt-dlp ./yt-dlp --hard-dereference"), none},
        {"has no file yt-dlp", script("mkdir yt-dlp && tar cf ../result yt-dlp"), none},
        // A name that is longer than the system takes shows only when it is unpacked.
        {"Unpacking files failed", script("touch x && tar cf ../result --transform s,x,$(printf %0300d), x"), none},
    };
    // clang-format on
    Put(OlderMainFile, "older");
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Reason);
        m_server.SetAnswer(ArchiveTarget, row.Archive);
        m_server.SetAnswer(ChecksumTarget, row.Checksum);
        const size_t logged = GetLog().size();
        EXPECT_EQ(DependencyInstaller::GetInstalledFilename(MappedDownloader, true), L"");
        EXPECT_THAT(GetLog().substr(logged), HasSubstr(row.Reason));
        EXPECT_THAT(GetLog().substr(logged), HasSubstr("Failed installing dependency 47"));
        EXPECT_EQ(Get(OlderMainFile), "older");
        EXPECT_THAT(ListPlugins(), testing::ElementsAre("linux_youtube-dl_v7"));
        EXPECT_TRUE(IsTempEmpty());
    }
    unsetenv("ZV_COMPONENT_SERVER");
    EXPECT_FALSE(DependencyInstaller::Install(Downloader));
    EXPECT_THAT(GetLog(), HasSubstr("There is no component server"));
}

TEST_F(DependencyInstallerTest, KeepsTheRenderersOwnFiles)
{
    ServeFromFolder("madvr_v40.tar.xz", MakeResult("echo new | tee madVR64.ax settings.bin > other.bin && tar cf ../result *"));
    const std::string folder = "Plugins/madvr_v40/";
    const auto kept = {"settings.bin", "3dlut/table.3dlut", "own.bin"};
    for (const std::string name : kept)
        Put(folder + name, "old\n");
    fs::create_symlink("nowhere", m_folder + folder + "link.bin");
    Put(folder + "folder/file.bin", "old\n");
    Put(folder + "madVR64.ax", "old\n");
    EXPECT_TRUE(DependencyInstaller::Install(Renderer)) << GetLog();
    for (const std::string name : kept)
        EXPECT_EQ(Get(folder + name), "old\n") << name;
    EXPECT_EQ(fs::read_symlink(m_folder + folder + "link.bin"), "nowhere");
    for (const std::string name : {"folder/file.bin", "settings_temp.bin"})
        EXPECT_EQ(Get(folder + name), "(none)") << name;
    for (const std::string name : {"madVR64.ax", "other.bin"})
        EXPECT_EQ(Get(folder + name), "new\n") << name;

    // Left by an installation of an earlier release that was killed.
    Put(folder + "settings.bin", "of the archive\n");
    Put(folder + "settings_temp.bin", "own\n");
    EXPECT_TRUE(DependencyInstaller::Install(Renderer));
    EXPECT_EQ(Get(folder + "settings.bin"), "own\n");
}

// The link is so deep that it leads to a place in the folder, but under the name of the settings it leads out of it.
TEST_F(DependencyInstallerTest, WritesTheRenderersSettingsThroughNoLink)
{
    ServeFromFolder("madvr_v40.tar.xz", MakeResult("mkdir -p a/b && ln -s ../../victim a/b/link && ln a/b/link settings.bin && "
                                                   "touch madVR64.ax && tar cf ../result a madVR64.ax settings.bin"));
    Put("victim", "outside");
    Put("Plugins/madvr_v40/settings.bin", "own");
    EXPECT_FALSE(DependencyInstaller::Install(Renderer));
    EXPECT_THAT(GetLog(), HasSubstr("settings.bin: the link leads to what is no file"));
    EXPECT_EQ(Get("Plugins/madvr_v40/settings.bin"), "own");

    ServeFromFolder("madvr_v40.tar.xz",
                    MakeResult("ln -s madVR64.ax settings.bin && echo new > madVR64.ax && tar cf ../result *"));
    EXPECT_TRUE(DependencyInstaller::Install(Renderer)) << GetLog();
    EXPECT_EQ(Get("Plugins/madvr_v40/settings.bin"), "own");
    EXPECT_EQ(Get("Plugins/madvr_v40/madVR64.ax"), "new\n");
    EXPECT_EQ(Get("victim"), "outside");
}

TEST_F(DependencyInstallerTest, KeepsTheFilesThatAPackageDoesNotReplace)
{
    const std::string folder = "Plugins/linux_avcodec_v17/";
    Put("Plugins/linux_avcodec_v16/libavcodec-zv.so.61", "older");
    Put(folder + "libavcodec-zv.so.61", "old");
    Put(folder + "sub/own", "own");
    const std::string script = "echo new > libavcodec-zv.so.61 && ";
    ServeFromFolder("linux_avcodec_v17.tar.xz", MakeResult(script + "mkdir sub && touch sub/new && tar cf ../result *"));
    EXPECT_TRUE(DependencyInstaller::Install(Decoders)) << GetLog();
    EXPECT_EQ(Get(folder + "libavcodec-zv.so.61"), "new\n");
    EXPECT_EQ(Get(folder + "sub/own"), "own");
    EXPECT_EQ(Get("Plugins/linux_avcodec_v16/libavcodec-zv.so.61"), "older");

    // There is no place for a file where a folder stays.
    ServeFromFolder("linux_avcodec_v17.tar.xz", MakeResult(script + "touch sub && tar cf ../result *"));
    EXPECT_FALSE(DependencyInstaller::Install(Decoders));
    EXPECT_THAT(GetLog(), HasSubstr("Moving preserved files failed"));
    EXPECT_EQ(Get(folder + "sub/own"), "own");
}

TEST_F(DependencyInstallerTest, SeveralInstallAtOnce)
{
    ServeFromFolder("linux_youtube-dl_v8.tar.xz", MakeDownloader());
    Put(OlderMainFile, "older");
    std::vector<std::future<bool>> installations;
    for (int32_t number = 0; number < 4; ++number)
        installations.push_back(std::async(std::launch::async, [] { return DependencyInstaller::Install(Downloader); }));
    for (std::future<bool>& installation : installations)
        EXPECT_TRUE(installation.get()) << GetLog();
    EXPECT_EQ(Get(MainFile), "new\n");
    EXPECT_THAT(ListPlugins(), testing::ElementsAre("linux_youtube-dl_v8"));
    EXPECT_TRUE(IsTempEmpty());
}

TEST_F(DependencyInstallerTest, ClearsAwayWhatEarlierInstallationsLeft)
{
    // An installation that was killed while it replaced the component, one that is running, and a download.
    Put(std::string(Folder) + ".1-0.part/old/yt-dlp", "old");
    Put(std::string(Folder) + ".1-1.part/lock", "");
    Put("Temp/linux_youtube-dl_v8.tar - 1.xz", "half");
    {
        const ZVDescriptor running(open((m_folder + Folder + ".1-1.part/lock").c_str(), O_RDWR | O_CLOEXEC));
        ASSERT_EQ(flock(running.Get(), LOCK_EX), 0);
        EXPECT_FALSE(DependencyInstaller::Install(Downloader)) << "the server has no package";
    }
    EXPECT_EQ(Get(MainFile), "old");
    EXPECT_THAT(ListPlugins(), testing::UnorderedElementsAre("linux_youtube-dl_v8", "linux_youtube-dl_v8.1-1.part"));
    EXPECT_FALSE(IsTempEmpty()) << "the download may be that of the running installation";

    // As after a kill before the old version was deleted.
    Put(OlderMainFile, "older");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), TextAt(MainFile));
    EXPECT_THAT(ListPlugins(), testing::ElementsAre("linux_youtube-dl_v8"));
    EXPECT_TRUE(IsTempEmpty());
}
}
