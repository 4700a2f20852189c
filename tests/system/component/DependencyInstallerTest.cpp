#include "system/component/DependencyInstaller.h"

#include "contracts/IZVSettings.h"
#include "contracts/IZVTools.h"
#include "system/file/ZVFileSystem.h"
#include "system/loader/LoaderFixture.h"
#include "system/log/CLogToStringItem.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;

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
    DependencyInstallerTest() { setenv("ZV_COMPONENT_SERVER", ServerAddress().c_str(), 1); }
    ~DependencyInstallerTest() override
    {
        unsetenv("ZV_COMPONENT_SERVER");
        g_pZVTools->GetSettings(true)->RemoveSetting(L"Dependencies", L"47");
    }

    std::string ServerAddress() const
    {
        const ZVString url = m_server.GetURL("/packages");
        return std::string(url.GetText(), url.GetText() + url.GetLength());
    }

    void PutDeep(const std::string& name, const std::string& content) const
    {
        fs::create_directories(fs::path(m_folder + name).parent_path());
        Put(name, content);
    }

    // The bytes of a tar file that a shell script makes in an empty folder, as "../archive".
    std::string MakeArchive(const std::string& script) const
    {
        fs::remove_all(m_folder + "content");
        fs::create_directories(m_folder + "content");
        EXPECT_EQ(system(("cd '" + m_folder + "content' && " + script).c_str()), 0) << script;
        const std::string archive = Get("archive");
        fs::remove_all(m_folder + "content");
        fs::remove(m_folder + "archive");
        return archive;
    }

    std::string MakeDownloader() const
    {
        return MakeArchive("echo new > yt-dlp && chmod 4777 yt-dlp && mkdir sub && ln -s ../yt-dlp "
                           "sub/link && ln yt-dlp hard && tar cf ../archive *");
    }

    std::string ChecksumOf(const std::string& bytes) const
    {
        Put("sum", bytes);
        EXPECT_EQ(system(("cd '" + m_folder + "' && sha256sum < sum > sum.txt").c_str()), 0);
        return Get("sum.txt");
    }

    CLogToStringItem m_log {UINT32_MAX};
};

std::string Joined(const CLogToStringItem& log)
{
    std::string text;
    for (const ZVString& line : log.GetLines())
        text += std::string(line.GetText(), line.GetText() + line.GetLength()) + "\n";
    return text;
}

TEST_F(DependencyInstallerTest, NamesComponentsByTheirNumber)
{
    const ZVString plugins = ZVFileSystem::GetDirectoryAppData() + L"Plugins/";
    // This one may stand beside the program too.
    EXPECT_TRUE(DependencyInstaller::GetFolder(15).EndsWith(L"/Plugins/linux_avcodec64_v17/"));
    EXPECT_EQ(DependencyInstaller::GetFolder(36), plugins + L"linux_avcodec_v17/");
    EXPECT_EQ(DependencyInstaller::GetFolder(23), plugins + L"linux_youtube-dl_v8/");
    EXPECT_EQ(DependencyInstaller::GetFolder(16), plugins + L"avcodec64_v25/");
    EXPECT_EQ(DependencyInstaller::GetFolder(57), L"");
    EXPECT_EQ(DependencyInstaller::GetFolder(2), L"");
    EXPECT_EQ(DependencyInstaller::GetDisplayName(26), L"libplacebo renderer");
    EXPECT_EQ(DependencyInstaller::GetMainFile(5), L"libcef.so");
    EXPECT_EQ(DependencyInstaller::GetMainFile(21), L"bin\\client\\jvm.dll");
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
    PutDeep(OlderMainFile, "older");
    PutDeep("Plugins/linux_youtube-dl-other_v7/yt-dlp", "other");
    umask(022);

    const ZVString expected = TextAt(MainFile);
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), expected);
    EXPECT_EQ(Get(MainFile), "new\n");
    EXPECT_EQ(Get(std::string(Folder) + "sub/link"), "new\n");
    EXPECT_EQ(Get(std::string(Folder) + "hard"), "new\n");
    EXPECT_EQ(static_cast<int>(fs::status(m_folder + MainFile).permissions()), 0755);
    EXPECT_FALSE(fs::exists(m_folder + "Plugins/linux_youtube-dl_v7"));
    EXPECT_TRUE(fs::exists(m_folder + "Plugins/linux_youtube-dl-other_v7"));
    EXPECT_THAT(Joined(m_log), testing::AllOf(testing::HasSubstr("Dependency 'YouTube Downloader' (23) is missing, installing"),
                                              testing::HasSubstr("Download of package linux_youtube-dl_v8.tar.xz finished"),
                                              testing::HasSubstr("Unpacking finished")));
    EXPECT_TRUE(fs::is_empty(m_folder + "Temp"));

    // It is there now, and nobody is asked again.
    unsetenv("ZV_COMPONENT_SERVER");
    EXPECT_EQ(DependencyInstaller::GetInstalledFilename(MappedDownloader, false), expected);
    EXPECT_EQ(m_server.GetRequests(ArchiveTarget).size(), 1u);

    // From a folder, where no checksum is.
    PutDeep("server/linux_youtube-dl_v8.tar.xz", archive);
    for (const char* scheme : {"", "file://"})
    {
        SCOPED_TRACE(scheme);
        setenv("ZV_COMPONENT_SERVER", (scheme + m_folder + "server").c_str(), 1);
        EXPECT_TRUE(DependencyInstaller::Install(Downloader));
    }
}

TEST_F(DependencyInstallerTest, LeavesNoHalfComponent)
{
    // Its last entry goes through a link, which shows only when it is unpacked.
    const std::string archive =
        MakeArchive("echo new > yt-dlp && mkdir sub && ln -s sub link && tar cf ../archive yt-dlp sub link && "
                    "tar rf ../archive --transform s,^,link/, yt-dlp");
    m_server.SetAnswer(ArchiveTarget, {.Body = archive});
    m_server.SetAnswer(ChecksumTarget, {.Status = 404});
    PutDeep("Plugins/linux_youtube-dl_v8.part/yt-dlp", "of an installation that was killed");
    for (int32_t attempt = 0; attempt < 2; ++attempt)
    {
        EXPECT_EQ(DependencyInstaller::GetInstalledFilename(Downloader, true), L"");
        EXPECT_TRUE(fs::is_empty(m_folder + "Plugins"));
    }
    EXPECT_THAT(Joined(m_log), testing::HasSubstr("Unpacking files failed"));
}

TEST_F(DependencyInstallerTest, InstallsTheDecodersAsTheyArePacked)
{
    const std::string component = ZV_CODEC_COMPONENT;
    const std::string archive = component + ".tar.xz";
    if (component.empty() || !fs::exists(archive))
        GTEST_SKIP() << "the codec component is not built, or the system's own libraries are used";
    for (const char* suffix : {"", ".sha256"})
    {
        std::ifstream file(archive + suffix, std::ios::binary);
        m_server.SetAnswer("/packages/linux_avcodec64_v17.tar.xz" + std::string(suffix), {.Body = {std::istreambuf_iterator<char>(file), {}}});
    }
    ASSERT_TRUE(DependencyInstaller::Install(15)) << Joined(m_log);
    EXPECT_EQ(DependencyInstaller::GetFolder(15), TextAt("Plugins/linux_avcodec64_v17/"));
    for (const auto& file : fs::directory_iterator(component))
    {
        const std::string installed = m_folder + "Plugins/linux_avcodec64_v17/" + file.path().filename().string();
        EXPECT_EQ(system(("cmp -s '" + file.path().string() + "' '" + installed + "'").c_str()), 0) << installed;
    }
    EXPECT_THAT(Joined(m_log), testing::Not(testing::HasSubstr("has no checksum")));
}

TEST_F(DependencyInstallerTest, LeavesWhatIsThereWhenThePackageIsBad)
{
    const std::string good = MakeDownloader();
    const ZVTestAnswer none {.Status = 404};
    const struct
    {
        const char* Name;
        ZVTestAnswer Archive;
        ZVTestAnswer Checksum;
        const char* Reason;
    } rows[] = {
        {"not there", none, none, "Downloading package failed"},
        {"cut download", {.Body = good, .CutAfter = 3000}, none, "Downloading package failed"},
        {"cut archive", {.Body = good.substr(0, 700)}, none, "it is damaged"},
        {"no archive", {.Body = "<html>Not found</html>"}, none, "it is damaged"},
        {"another checksum", {.Body = good}, {.Body = ChecksumOf("x")}, "is not the one that its checksum tells of"},
        {"an empty checksum", {.Body = good}, {.Body = " "}, "is not the one that its checksum tells of"},
        {"checksum fails", {.Body = good}, {.Status = 500}, "did not load"},
        {"absolute name", {.Body = MakeArchive("touch x && tar cPf ../archive --transform s,^,/tmp/, x")}, none, "leaves the folder"},
        {"name above", {.Body = MakeArchive("touch x && tar cPf ../archive --transform s,^,../, x")}, none, "leaves the folder"},
        {"name above within", {.Body = MakeArchive("touch x && tar cPf ../archive --transform s,^,a/../, x")}, none, "leaves the folder"},
        {"link above", {.Body = MakeArchive("mkdir a && ln -s ../../x a/link && tar cf ../archive a")}, none, "link leaves"},
        {"link above through another",
         {.Body = MakeArchive("mkdir -p a/b && ln -s ../.. a/b/up && ln -s b/up/../x a/link && tar cf ../archive a")},
         none,
         "link leaves"},
        {"absolute link", {.Body = MakeArchive("ln -s /etc/passwd link && tar cf ../archive link")}, none, "link leaves"},
        {"pipe", {.Body = MakeArchive("mkfifo pipe && tar cf ../archive pipe")}, none, "neither a file"},
        {"empty", {.Body = MakeArchive("tar cf ../archive -T /dev/null")}, none, "it is empty"},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        PutDeep(OlderMainFile, "older");
        m_server.SetAnswer(ArchiveTarget, row.Archive);
        m_server.SetAnswer(ChecksumTarget, row.Checksum);
        const CLogToStringItem log(UINT32_MAX);
        EXPECT_EQ(DependencyInstaller::GetInstalledFilename(MappedDownloader, true), L"");
        EXPECT_THAT(Joined(log), testing::AllOf(testing::HasSubstr(row.Reason), testing::HasSubstr("Failed installing dependency 47")));
        EXPECT_EQ(Get(OlderMainFile), "older");
        EXPECT_FALSE(fs::exists(m_folder + Folder));
        EXPECT_TRUE(!fs::exists(m_folder + "Temp") || fs::is_empty(m_folder + "Temp"));
    }
    unsetenv("ZV_COMPONENT_SERVER");
    EXPECT_FALSE(DependencyInstaller::Install(Downloader));
    EXPECT_FALSE(DependencyInstaller::Install(2));
    EXPECT_THAT(Joined(m_log), testing::HasSubstr("There is no component server"));
}

TEST_F(DependencyInstallerTest, KeepsTheRenderersOwnFiles)
{
    m_server.SetAnswer("/packages/madvr_v40.tar.xz",
                       {.Body = MakeArchive("echo new | tee madVR64.ax settings.bin > other.bin && tar cf ../archive *")});
    const std::string folder = "Plugins/madvr_v40/";
    for (const char* name : {"settings.bin", "3dlut/table.3dlut", "own.bin", "old.txt", "folder/file.bin", "madVR64.ax"})
        PutDeep(folder + name, "old\n");
    EXPECT_TRUE(DependencyInstaller::Install(Renderer));
    for (const auto& [name, content] : {std::pair("settings.bin", "old\n"), std::pair("3dlut/table.3dlut", "old\n"),
                                        std::pair("own.bin", "old\n"), std::pair("old.txt", "(none)"), std::pair("folder/file.bin", "(none)"),
                                        std::pair("madVR64.ax", "new\n"), std::pair("other.bin", "new\n"),
                                        std::pair("settings_temp.bin", "(none)")})
        EXPECT_EQ(Get(folder + name), content) << name;

    // An installation that ended early had saved them.
    PutDeep(folder + "settings.bin", "of the archive\n");
    PutDeep(folder + "settings_temp.bin", "own\n");
    EXPECT_TRUE(DependencyInstaller::Install(Renderer));
    EXPECT_EQ(Get(folder + "settings.bin"), "own\n");
}
}
