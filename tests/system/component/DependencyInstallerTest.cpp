#include "system/component/DependencyInstaller.h"

#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "core/string/ZVStringUTF8.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/LoaderFixture.h"
#include "system/log/CLogToStringItem.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::HasSubstr;

// A component of which only one version is kept, by its generic number and by that of this platform.
constexpr int32_t Downloader = 23;
constexpr int32_t MappedDownloader = 47;
constexpr int32_t Renderer = 13;
constexpr char Folder[] = "Plugins/linux_youtube-dl_v8/";
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

    // What a shell script in an empty folder writes to "../result".
    std::string MakeResult(const std::string& script) const
    {
        fs::create_directories(m_folder + "content");
        EXPECT_EQ(system(("cd '" + m_folder + "content' && " + script).c_str()), 0) << script;
        const std::string result = Get("result");
        fs::remove_all(m_folder + "content");
        fs::remove(m_folder + "result");
        return result;
    }

    // The bytes of a tar file of a component.
    std::string MakeDownloader() const
    {
        return MakeResult("echo new > yt-dlp && chmod 4777 yt-dlp && mkdir sub && ln -s ../yt-dlp sub/link && ln yt-dlp hard && "
                          "tar cf ../result *");
    }

    std::string ChecksumOf(const std::string& bytes) const
    {
        Put("content/bytes", bytes);
        return MakeResult("sha256sum < bytes > ../result");
    }

    std::string GetLog() const { return ZVStringUTF8(m_log.GetLines().GetJoined(L"\n")).Get(); }

    CLogToStringItem m_log {UINT32_MAX};
};

TEST_F(DependencyInstallerTest, NamesComponentsByTheirNumber)
{
    // This one may stand beside the program too.
    EXPECT_TRUE(DependencyInstaller::GetFolder(15).EndsWith(L"/Plugins/linux_avcodec64_v17/"));
    EXPECT_EQ(DependencyInstaller::GetFolder(36), ZVFileSystem::GetDirectoryAppData() + L"Plugins/linux_avcodec_v17/");
    EXPECT_EQ(DependencyInstaller::GetFolder(57), L"");
    EXPECT_EQ(DependencyInstaller::GetDisplayName(26), L"libplacebo renderer");
    EXPECT_EQ(DependencyInstaller::GetMainFile(5), L"libcef.so");
    EXPECT_EQ(DependencyInstaller::GetVersion(0), L"9");
    EXPECT_EQ(DependencyInstaller::GetPackageName(11), L"lav");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(2, true), L"mpcenc");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, false), L"");
    EXPECT_FALSE(fs::exists(m_folder + "Locks"));
}

TEST_F(DependencyInstallerTest, InstallsWhatIsMissing)
{
    const std::string archive = MakeDownloader();
    m_server.SetAnswer(ArchiveTarget, {.Body = archive});
    m_server.SetAnswer(ChecksumTarget, {.Body = ChecksumOf(archive)});
    Put(OlderMainFile, "older");
    Put("Plugins/linux_youtube-dl-other_v7/yt-dlp", "other");
    umask(022);

    const ZVString expected = TextAt(MainFile);
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), expected);
    for (const char* file : {"yt-dlp", "sub/link", "hard"})
        EXPECT_EQ(Get(std::string(Folder) + file), "new\n");
    EXPECT_EQ(static_cast<int>(fs::status(m_folder + MainFile).permissions()), 0755);
    EXPECT_FALSE(fs::exists(m_folder + "Plugins/linux_youtube-dl_v7"));
    EXPECT_TRUE(fs::exists(m_folder + "Plugins/linux_youtube-dl-other_v7"));
    EXPECT_THAT(GetLog(), HasSubstr("Dependency 'YouTube Downloader' (23) is missing, installing"));
    EXPECT_TRUE(fs::is_empty(m_folder + "Temp"));

    // It is there now, and nobody is asked again, not even when another process has installed it.
    unsetenv("ZV_COMPONENT_SERVER");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(MappedDownloader, false), expected);
    ForgetInstallation();
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, false), L"");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), expected);

    // From a folder, where no checksum is.
    Put("server/linux_youtube-dl_v8.tar.xz", archive);
    SetServer("file://" + m_folder + "server");
    EXPECT_TRUE(DependencyInstaller::Install(Downloader));
}

TEST_F(DependencyInstallerTest, LeavesNoHalfComponent)
{
    // Its last entry goes through a link, which shows only when it is unpacked.
    m_server.SetAnswer(
        ArchiveTarget,
        {.Body = MakeResult("echo new > yt-dlp && mkdir sub && ln -s sub link && tar cf ../result yt-dlp sub link && "
                            "tar rf ../result --transform s,^,link/, yt-dlp")});
    Put("Plugins/linux_youtube-dl_v8.part/yt-dlp", "of an installation that was killed");
    for (int32_t attempt = 0; attempt < 2; ++attempt)
    {
        EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), L"");
        EXPECT_TRUE(fs::is_empty(m_folder + "Plugins"));
    }
    EXPECT_THAT(GetLog(), HasSubstr("Unpacking files failed"));
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
    EXPECT_THAT(GetLog(), testing::Not(HasSubstr("has no checksum")));
}

TEST_F(DependencyInstallerTest, LeavesWhatIsThereWhenThePackageIsBad)
{
    const std::string good = MakeDownloader();
    const auto check = [this](const ZVTestAnswer& archive, const ZVTestAnswer& checksum, const std::string& reason)
    {
        SCOPED_TRACE(reason);
        Put(OlderMainFile, "older");
        m_server.SetAnswer(ArchiveTarget, archive);
        m_server.SetAnswer(ChecksumTarget, checksum);
        const size_t logged = GetLog().size();
        EXPECT_EQ(DependencyInstaller::GetInstalledFilename(MappedDownloader, true), L"");
        EXPECT_THAT(GetLog().substr(logged), testing::AllOf(HasSubstr(reason), HasSubstr("Failed installing dependency 47")));
        EXPECT_EQ(Get(OlderMainFile), "older");
        EXPECT_FALSE(fs::exists(m_folder + Folder));
        EXPECT_TRUE(!fs::exists(m_folder + "Temp") || fs::is_empty(m_folder + "Temp"));
    };
    const ZVTestAnswer none {.Status = 404};
    check(none, none, "Downloading package failed");
    check({.Body = good, .CutAfter = 3000}, none, "bytes remaining to read");
    check({.Body = good.substr(0, 700)}, none, "it is damaged");
    check({.Body = good}, {.Body = ChecksumOf("x")}, "is not the one that its checksum tells of");
    check({.Body = good}, {.Body = " "}, "is not the one that its checksum tells of");
    check({.Body = good}, {.Status = 500}, "did not load");
    const auto checkScript = [&](const char* script, const char* reason) { check({.Body = MakeResult(script)}, none, reason); };
    checkScript("touch x && tar cPf ../result --transform s,^,/tmp/, x", "leaves the folder");
    checkScript("touch x && tar cPf ../result --transform s,^,a/../../, x", "leaves the folder");
    checkScript("mkdir a && ln -s ../../x a/link && tar cf ../result a", "link leaves");
    checkScript("mkdir -p a/b && ln -s ../.. a/b/up && ln -s b/up/../x a/link && tar cf ../result a", "link leaves");
    checkScript("ln -s /etc/passwd link && tar cf ../result link", "link leaves");
    checkScript("mkfifo pipe && tar cf ../result pipe", "neither a file");
    checkScript("tar cf ../result -T /dev/null", "it is empty");

    unsetenv("ZV_COMPONENT_SERVER");
    EXPECT_FALSE(DependencyInstaller::Install(Downloader));
    EXPECT_FALSE(DependencyInstaller::Install(2));
    EXPECT_THAT(GetLog(), HasSubstr("There is no component server"));
}

TEST_F(DependencyInstallerTest, KeepsTheRenderersOwnFiles)
{
    m_server.SetAnswer("/packages/madvr_v40.tar.xz",
                       {.Body = MakeResult("echo new | tee madVR64.ax settings.bin > other.bin && tar cf ../result *")});
    const std::string folder = "Plugins/madvr_v40/";
    const auto kept = {"settings.bin", "3dlut/table.3dlut", "own.bin"};
    for (const std::string name : kept)
        Put(folder + name, "old\n");
    Put(folder + "folder/file.bin", "old\n");
    Put(folder + "madVR64.ax", "old\n");
    EXPECT_TRUE(DependencyInstaller::Install(Renderer));
    for (const std::string name : kept)
        EXPECT_EQ(Get(folder + name), "old\n") << name;
    EXPECT_EQ(Get(folder + "folder/file.bin") + Get(folder + "settings_temp.bin"), "(none)(none)");
    EXPECT_EQ(Get(folder + "madVR64.ax") + Get(folder + "other.bin"), "new\nnew\n");

    // An installation that ended early had saved them.
    Put(folder + "settings.bin", "of the archive\n");
    Put(folder + "settings_temp.bin", "own\n");
    EXPECT_TRUE(DependencyInstaller::Install(Renderer));
    EXPECT_EQ(Get(folder + "settings.bin"), "own\n");
}
}
