#include "FilmFolder.h"
#include "disc/bluray/BlurayBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;
using namespace BlurayBytes;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;

constexpr uint32_t Second = 45000;

// A disc with real streams: a long film of two sounds, and a short one.
class BlurayAnalysis : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
        for (const char* folder : {"BDMV/CLIPINF", "BDMV/PLAYLIST", "BDMV/STREAM"})
            fs::create_directories(folder);
        FilmFolder::Write("BDMV/index.bdmv", "INDX0200");
        FilmFolder::Make(FilmPicture + FilmSound + FilmSound + "-map 0 -map 1 -map 2 " + FilmH264 +
                         "-c:a ac3 -metadata:s:a:0 language=ger -metadata:s:a:1 language=fre -streamid 0:4113 -streamid 1:4352 "
                         "-streamid 2:4353 -f mpegts -mpegts_m2ts_mode 1 BDMV/STREAM/00001.m2ts");
        FilmFolder::Make("-f lavfi -i testsrc2=s=160x120:r=25:d=1 " + FilmH264 +
                         "-f mpegts -mpegts_m2ts_mode 1 BDMV/STREAM/00002.m2ts");
        // The disc knows the first sound, and that the second has a language but not which.
        AddTitle("00001", 90, {Video(), Audio(0x1100, "eng")});
        AddTitle("00002", 5, {Video()});
    }

    static void AddTitle(const std::string& name, uint32_t seconds, const std::vector<Stream>& streams)
    {
        FilmFolder::Write("BDMV/CLIPINF/" + name + ".clpi", Clip(streams));
        FilmFolder::Write("BDMV/PLAYLIST/" + name + ".mpls",
                          Playlist({
                              {.Name = name, .Out = seconds * Second, .Audio = {Audio(0x1100, "eng")}}
        }));
    }

    FilmFolder m_folder;
};

TEST_F(BlurayAnalysis, TellsWhatTheMainTitleIs)
{
    fs::copy_file("BDMV/index.bdmv", "BDMV/disc.bluray");
    for (const char* name : {"BDMV/index.bdmv", "BDMV/disc.bluray", "BDMV/missing.bluray3d", "BDMV/PLAYLIST/00001.mpls"})
    {
        const FilmAnalysis analysis = FilmFolder::Analyze(name);
        EXPECT_EQ(analysis.Run.Status, 0) << name;
        EXPECT_THAT(analysis.Properties, IsSupersetOf({"Video Codec=H264 High L4.1", "Aspect Ratio=1.78",
                                                       "Audio Codec=AC-3;AC-3;", "Audio Language=English;French;"}))
            << name;
        EXPECT_THAT(analysis.Log, HasSubstr("64\tCZVVideoAnalyzeExtended::AnalyzeFile\tUsing '"));
        EXPECT_THAT(analysis.Log, HasSubstr("BDMV/STREAM/00001.m2ts' as Blu-ray reference clip"));
    }
    // From within the folders, too.
    fs::current_path("BDMV/PLAYLIST");
    EXPECT_THAT(FilmFolder::Analyze("00002.mpls").Properties, Contains("Aspect Ratio=1.33"));
    fs::current_path("..");
    EXPECT_THAT(FilmFolder::Analyze("index.bdmv").Properties, Contains("Aspect Ratio=1.78"));
}

TEST_F(BlurayAnalysis, TakesTheTitleThatIsAskedForOrSaysWhyNot)
{
    EXPECT_THAT(FilmFolder::Analyze("BDMV/PLAYLIST/00002.mpls").Properties, Contains("Aspect Ratio=1.33"));
    fs::copy_file("BDMV/PLAYLIST/00002.mpls", "BDMV/PLAYLIST/00003.mpls");
    const FilmAnalysis analysis = FilmFolder::Analyze("BDMV\\PLAYLIST\\00003.mpls");
    EXPECT_THAT(analysis.Properties, Contains("Aspect Ratio=1.78"));
    EXPECT_THAT(analysis.Log, HasSubstr("00003.mpls is not taken, since it shows the same as 00002.mpls"));
}

TEST_F(BlurayAnalysis, FindsTheBlackBarsOfTheMainTitle)
{
    FilmFolder::Make("-f lavfi -i color=gray:s=320x140:r=25:d=60 -vf pad=320:180:0:20 -c:v libx264 -preset ultrafast "
                     "-f mpegts -mpegts_m2ts_mode 1 BDMV/STREAM/00001.m2ts");
    EXPECT_THAT(FilmFolder::FindBlackBars("BDMV/index.bdmv").Properties, Contains("Video Crop=0x20x320x160"));
}

TEST_F(BlurayAnalysis, FailsWithoutATitleThatCanBeOpened)
{
    fs::remove("BDMV/STREAM/00001.m2ts");
    const FilmAnalysis noStream = FilmFolder::Analyze("BDMV/index.bdmv");
    EXPECT_EQ(noStream.Run.Status, 255);
    EXPECT_THAT(noStream.Log, HasSubstr("The disc has no title"));
    fs::create_directory("empty");
    EXPECT_EQ(FilmFolder::Analyze("empty/index.bdmv").Run.Status, 255);
    // An extension in capitals is that of a film.
    fs::copy_file("BDMV/STREAM/00002.m2ts", "film.BDMV");
    EXPECT_THAT(FilmFolder::Analyze("film.BDMV").Properties, Contains("Aspect Ratio=1.33"));
}
}
