#include "disc/dvd/CDvdTitle.h"

#include "core/string/ZVStringUTF8.h"
#include "disc/dvd/DvdBytes.h"
#include "process/WorkFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

class CDvdTitleTest : public testing::Test
{
protected:
    static void Put(const std::string& name, const std::string& bytes)
    {
        std::filesystem::create_directories(std::filesystem::absolute(name).parent_path());
        WorkFolder::Write(name, bytes);
    }
    static void Put(const std::string& name, size_t size) { Put(name, std::string(size, 'x')); }
    ZVString At(const std::string& name) const { return ZVString::FromUTF8(m_folder.PathOf(name).c_str()); }

    // The bare names of the parts.
    static std::vector<std::string> NamesOf(const CDvdTitle& title)
    {
        std::vector<std::string> names;
        for (const CDvdTitle::Part& part : title.Parts)
            names.push_back(std::filesystem::path(ZVStringUTF8(part.Path).Get()).filename());
        return names;
    }

    WorkFolder m_folder;
};

TEST_F(CDvdTitleTest, IsTheLargestSet)
{
    Put("disc/VTS_01_1.VOB", 60);
    Put("disc/VTS_02_0.VOB", 900);  // the menu
    Put("disc/vts_02_9.vob", 20);
    Put("disc/Vts_02_1.Vob", 40);
    Put("disc/VTS_02_3.VOB", 5);
    Put("disc/VTS_02_4.VOB", size_t {0});
    Put("disc/VTS_99_1.VOB", 65);
    for (const char* const other :
         {"VIDEO_TS.VOB", "VTS_00_1.VOB", "VTS_2_1.VOB", "VTS_03_10.VOB", "VTS_03_1.VOB.bak", "XVTS_03_1.VOB"})
        Put(std::string("disc/") + other, 1000);
    CDvdTitle title;
    for (const char* const name : {"disc", "disc/", "disc/VIDEO_TS.IFO"})
    {
        ASSERT_TRUE(title.Open(At(name))) << name;
        EXPECT_EQ(title.Number, 2) << name;
        EXPECT_THAT(NamesOf(title), ElementsAre("Vts_02_1.Vob", "VTS_02_3.VOB", "vts_02_9.vob")) << name;
        EXPECT_EQ(title.Parts[2].Size, 20) << name;
        EXPECT_EQ(title.GetSize(), 65) << name;
        EXPECT_EQ(title.Duration, 0) << name;
    }
    Put("disc/VTS_99_2.VOB", 1);
    ASSERT_TRUE(title.Open(At("disc")));
    EXPECT_EQ(title.Number, 99);

    EXPECT_FALSE(title.Open(At("none")));
    EXPECT_THAT(NamesOf(title), IsEmpty());
    Put("empty/VTS_01_1.VOB", size_t {0});
    EXPECT_FALSE(title.Open(At("empty")));
}

TEST_F(CDvdTitleTest, TakesTheTimeFromTheBackupOfADamagedFile)
{
    const std::string info = DvdBytes::File({{std::string("\0\0\x07\x40", 4)}});
    Put("disc/VTS_01_1.VOB", 1);
    Put("disc/vts_01_0.bup", info);
    CDvdTitle title;
    ASSERT_TRUE(title.Open(At("disc")));
    EXPECT_EQ(title.Duration, 7'000) << "without the file";
    Put("disc/VTS_01_0.IFO", info.substr(0, 2048));
    ASSERT_TRUE(title.Open(At("disc")));
    EXPECT_EQ(title.Duration, 7'000) << "with half of the file";
    Put("disc/vts_01_0.bup", info + std::string(4 << 20, '\0'));
    ASSERT_TRUE(title.Open(At("disc")));
    EXPECT_EQ(title.Duration, 0) << "with a backup that is too large";
}

TEST_F(CDvdTitleTest, KnowsTheFolderOfADisc)
{
    Put("Disc/VIDEO_TS/VIDEO_TS.BUP", 1);
    Put("Disc/film.mkv", 1);
    Put("small/video_ts/video_ts.ifo", 1);
    Put("bare/VTS_01_1.VOB", 1);
    const std::tuple<const char*, bool, const char*> rows[] = {
        {"Disc/VIDEO_TS/VIDEO_TS.IFO", false, "Disc/VIDEO_TS/" },
        {"Disc/VIDEO_TS",              false, "Disc/VIDEO_TS/" },
        {"Disc/",                      false, "Disc/VIDEO_TS/" },
        {"small",                      false, "small/video_ts/"},
        {"Disc/film.mkv",              false, ""               },
        {"Disc/film.mkv",              true,  "Disc/VIDEO_TS/" },
        {"bare",                       false, ""               },
        {"bare/VIDEO_TS.IFO",          true,  "bare/"          },
    };
    for (const auto& [path, saysSo, folder] : rows)
    {
        ZVFilename name(At(path));
        if (saysSo)
            name.SetProperty(ZVFilename::FileTypeProperty, L"dvd");
        EXPECT_STREQ(CDvdTitle::FindFolder(name), *folder == '\0' ? ZVString() : At(folder)) << path << " " << saysSo;
    }
    EXPECT_STREQ(CDvdTitle::FindFolder(ZVFilename(L"file://" + At("small"))), At("small/video_ts/"));
    EXPECT_STREQ(CDvdTitle::FindFolder(ZVFilename(L"http://host/VIDEO_TS/VIDEO_TS.IFO")), L"");
}

// Discs that an authoring program made: two title sets, of which the second has a short and a long program chain. The chapters
// begin with the groups of pictures of one second.
TEST_F(CDvdTitleTest, ReadsDiscsOfAnAuthoringProgram)
{
    if (system("ffmpeg -version >/dev/null 2>&1 && dvdauthor --version 2>&1 | grep -q DVDAuthor") != 0)
        GTEST_SKIP() << "ffmpeg or dvdauthor is not there";
    Put("disc.xml", "<dvdauthor><vmgm/><titleset><titles><pgc><vob file='short.mpg'/></pgc></titles></titleset><titleset><titles>"
                    "<pgc><vob file='short.mpg'/></pgc><pgc><vob file='long.mpg' chapters='0,2.1,5.1,11.1'/></pgc>"
                    "</titles></titleset></dvdauthor>");
    Put("make",
        R"(set -e; make() { ffmpeg -v error -y -f lavfi -i testsrc2=s=$2 -f lavfi -i sine -g $3 -bf 0 -t $4 -target $1-dvd $5; }
                   make "$@" 3 short.mpg; make "$@" 12 long.mpg; VIDEO_FORMAT=$1 dvdauthor -o $1 -x disc.xml)");
    const std::tuple<std::string, std::string, int64_t> rows[] = {
        {"pal",  "720x576:r=25 25",         1000},
        {"ntsc", "720x480:r=30000/1001 30", 1001},
    };
    for (const auto& [standard, arguments, second] : rows)
    {
        ASSERT_EQ(system(("sh make " + standard + " " + arguments + " >log 2>&1").c_str()), 0) << WorkFolder::Read("log");
        CDvdTitle title;
        ASSERT_TRUE(title.Open(CDvdTitle::FindFolder(ZVFilename(At(standard))))) << standard;
        EXPECT_EQ(title.Number, 2) << standard;
        EXPECT_THAT(NamesOf(title), ElementsAre("VTS_02_1.VOB")) << standard;
        EXPECT_EQ(title.Duration, 12 * second) << standard;
        EXPECT_THAT(std::vector<int64_t>(title.Chapters.begin(), title.Chapters.end()),
                    ElementsAre(0, 2 * second, 5 * second, 11 * second))
            << standard;
    }
}
}
