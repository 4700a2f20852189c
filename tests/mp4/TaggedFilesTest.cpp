// Films with the tags of other programs.

#include "mp4/CMp4File.h"
#include "mp4/tags/TagBytes.h"
#include "process/WorkFolder.h"
#include "system/filename/ZVFilename.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;
using testing::IsSupersetOf;

struct TaggedFile
{
    const char* Name;
    const char* Check;    // a command that succeeds when the program is there
    const char* Command;  // makes a tagged file of film.mp4 or film.mov, with the pictures one.png and two.png
    const char* File;
    std::vector<std::wstring> Tags;
    const char* Picture;  // the file that its cover is, or null for no cover
};

class TaggedFilesTest : public TagTest, public testing::WithParamInterface<TaggedFile>
{
protected:
    static bool Succeeds(const std::string& command) { return system((command + " </dev/null >log 2>&1").c_str()) == 0; }

    const WorkFolder m_folder;
};

TEST_P(TaggedFilesTest, TellTheirTagsAndAreWrittenAsTheyAre)
{
    const TaggedFile& row = GetParam();
    for (const char* const check : {"ffmpeg -version", row.Check})
        if (!Succeeds(check))
            GTEST_SKIP() << "this fails here: " << check;
    ASSERT_TRUE(Succeeds("ffmpeg -f lavfi -i testsrc2=s=64x48:d=0.2 -f lavfi -i sine=d=0.2 -c:v mpeg4 -map 0 -map 1 film.mp4 "
                         "-c:v mpeg4 -map 0 -map 1 film.mov -map 0 -frames:v 1 one.png -map 0 -frames:v 1 -s 32x24 two.png"))
        << ReadFile("log");
    ASSERT_TRUE(Succeeds(row.Command)) << ReadFile("log");

    CMp4File file;
    ASSERT_TRUE(file.Open(ZVFilename::FromPath(ZVString::FromUTF8(row.File))));
    ASSERT_TRUE(file.ReadAtoms());
    ASSERT_TRUE(file.Verify());
    ZVPropertyMap tags;
    EXPECT_TRUE(file.GetTags(tags));
    EXPECT_THAT(GetValues(tags), IsSupersetOf(row.Tags));
    ZVFilename picture;
    EXPECT_EQ(file.GetImageFile(picture), row.Picture != nullptr);
    EXPECT_EQ(ReadFile(picture.GetFilename().GetText()), row.Picture == nullptr ? "" : ReadFile(row.Picture));
    const Bytes bytes = ReadFile(row.File);
    EXPECT_EQ(Tree(bytes).Write(), bytes);
}

// clang-format off
const TaggedFile TaggedFiles[] = {
    {"AtomicParsleyShow", "AtomicParsley --version",
     "AtomicParsley film.mp4 -o tagged.mp4 --title One --artist Two --album Three --genre Comedy --tracknum 3/12 --disk 1/2 "
     "--year 2020-05-17T06:00:00Z --stik 'TV Show' --TVShowName Show --TVSeasonNum 4 --TVEpisodeNum 300 --artwork one.png "
     "--comment 'A comment' --grouping Group --compilation true --bpm 120",
     "tagged.mp4",
     {L"Name=One", L"Artist=Two", L"Album=Three", L"Genre=Comedy", L"Track #=3/12", L"Disc #=1/2", L"Date=43968.25", L"stik=10",
      L"Media Sub Type=TV Show", L"TV Show Name=Show", L"Comment=A comment", L"Grouping=Group", L"Compilation=1", L"BPM=120"},
     "one.png"},
    {"AtomicParsleyMovie", "AtomicParsley --version",
     "AtomicParsley film.mp4 -o tagged.mp4 --genre 'Of my own' --stik Movie --tracknum 3 --copyright Someone --podcastFlag true "
     "--rDNSatom value name=MyName domain=org.example",
     "tagged.mp4",
     {L"Genre=Of my own", L"Media Sub Type=Movie", L"Track #=3", L"Copyright=Someone", L"Podcast=1", L"MyName=value"}, nullptr},
    {"Mutagen", "/usr/bin/python3 -c 'import mutagen'",
     "/usr/bin/python3 -c \"\n"
     "from mutagen.mp4 import *\n"
     "film = MP4('film.mp4')\n"
     "film['\\xa9nam'], film['\\xa9ART'] = 'Caf\\xe9', ['First', 'Second']\n"
     "film['----:an odd namespace:My: key'], film['----:com.apple.iTunes:RATING'] = b'value', b'8'\n"
     "film['soar'], film['sonm'], film['pgap'] = 'sa', 'sn', True\n"
     "film['covr'] = [MP4Cover(open(name, 'rb').read(), MP4Cover.FORMAT_PNG) for name in ('two.png', 'one.png')]\n"
     "film.save()\"",
     "film.mp4", {L"Name=Caf\u00e9", L"Artist=First", L"My: key=value", L"Rating=4", L"Artist Sort Order=sa", L"Artist Sort=sa",
      L"Title Sort Order=sn", L"Title Sort=sn", L"Gapless Playback=1"}, "two.png"},
    {"ExifTool", "exiftool -ver",
     "exiftool -Keys:GPSCoordinates='48.8577, 2.295, 35' -Keys:Make=Maker -Keys:Model=One "
     "-Keys:CreationDate='2020:05:17 06:00:00Z' -Keys:Title=New -ItemList:Title=Old -ItemList:Artist=Two film.mov",
     "film.mov", {L"Location=+48.8577+002.295+35.000/", L"Latitude=+48.8577", L"Longitude=+002.295", L"Altitude=+35.000",
      L"Make=Maker", L"Model=One", L"Camera=Maker One", L"Date=43968.25", L"Name=New", L"Artist=Two"}, nullptr},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, TaggedFilesTest, testing::ValuesIn(TaggedFiles), [](const auto& row) { return row.param.Name; });
}
