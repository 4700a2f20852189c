#include "FilmFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

// Films of two minutes with a key frame each second. Their places are at 45 and at 15, 30, ... 105 seconds; of the 200 frames at each
// all but the first 16, which is one second, tell a rectangle.
constexpr int PlaceHits = 184;
constexpr int AllHits = 8 * PlaceHits;
const std::string H264 = "-c:v libx264 -preset ultrafast -g 16 -bf 0 ";

std::set<std::string> Finding(const std::string& crop, const std::string& aspect)
{
    return {"Video Crop=" + crop, "Aspect Ratio=" + aspect};
}

// What is found in a film of one rectangle or of several.
std::set<std::string> Finding(const std::string& crop, const std::string& aspect, int score, const std::string& lines)
{
    std::set<std::string> finding = Finding(crop, aspect);
    const std::string heading = "Score: " + std::to_string(score) + "\nResult: " + crop + " (" + aspect + ")\n\n";
    const std::string closing = score < 3 ? "" : "\nHits <1% have been skipped due to a high accuracy score.";
    finding.insert("Video Black Bar Analysis Report=" + heading + lines + closing);
    return finding;
}

std::string Line(const std::string& rect, const std::string& aspect, int percent, int hits, const std::string& first)
{
    return rect + " (" + aspect + "), " + std::to_string(percent) + "% (" + std::to_string(hits) + " samples), first at " +
           first + "\n";
}

std::set<std::string> Sure(const std::string& rect, const std::string& aspect, int hits = AllHits,
                           const std::string& first = "00:00:46")
{
    return Finding(rect, aspect, 5, Line(rect, aspect, 100, hits, first));
}

// Fills everything but a rectangle with a color for as long as an expression of the time t is not zero.
std::string Bars(int left, int top, int right, int bottom, const std::string& color = "black", const std::string& enable = "1")
{
    const auto box = [&](int x, int y, int width, int height)
    {
        return "drawbox=x=" + std::to_string(x) + ":y=" + std::to_string(y) + ":w=" + std::to_string(width) +
               ":h=" + std::to_string(height) + ":color=" + color + ":t=fill:enable='" + enable + "'";
    };
    std::string filters = "null";
    for (const auto& [x, y, width, height] : {
             std::array {0,     0,      640,         top         },
              std::array {0,     bottom, 640,         360 - bottom},
              std::array {0,     0,      left,        360         },
             std::array {right, 0,      640 - right, 360         }
    })
        if (width > 0 && height > 0)
            filters += "," + box(x, y, width, height);
    return filters;
}

class BlackBars : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    // Makes a film of gray picture with some filters, whose last argument is its name. Pictures that do not change are encoded for
    // seven and a half seconds, again and again the same.
    static void Make(const std::string& filters, const std::string& encoder, const std::string& name)
    {
        FilmFolder::Make("-f lavfi -i color=gray:s=640x360:r=16:d=7.5 -vf \"" + filters + "\" " + encoder + " loop.nut");
        FilmFolder::Make("-stream_loop -1 -i loop.nut -c copy -t 120 " + name);
    }
    static void MakeChanging(const std::string& filters, const std::string& arguments)
    {
        FilmFolder::Make("-f lavfi -i color=gray:s=640x360:r=16:d=120 -vf \"" + filters + "\" " + H264 + arguments);
    }

    static std::string ExpectFinding(const std::string& name, const std::set<std::string>& expected)
    {
        SCOPED_TRACE(name);
        const FilmAnalysis analysis = FilmFolder::FindBlackBars(name);
        EXPECT_EQ(analysis.Run.Status, 0);
        EXPECT_EQ(analysis.Run.Error, "");
        EXPECT_EQ(analysis.Properties, expected) << analysis.Log;
        return analysis.Log;
    }

    FilmFolder m_folder;
};

TEST_F(BlackBars, AreFoundWhereverTheyAre)
{
    struct Row
    {
        const char* Name;
        std::string Filters;
        std::string Encoder;
        const char* Crop;
        const char* Aspect;
    };
    const std::string wide = Bars(0, 46, 640, 314);
    const std::string small = Bars(0, 48, 640, 312) + ",scale=320:180";
    const Row rows[] = {
        {"2.39.mkv",                                        wide,                                                                   H264,"0x46x640x314",                                                                    "2.39"},
 // The height is rounded to a multiple of four, which cuts the picture by two lines.
        {"1.85.mp4",                                        Bars(0,                                                                 6,640,                                                                               352), H264, "0x8x640x352", "1.86"},
        {"pillars.mkv",                                    Bars(80,                                                                                                    0,560,360),H264, "80x0x560x360", "1.33"},
        {"top.ts",                                              Bars(0,                                                                                                                60,         640,                                                                                                                                    360),                                                                                                                                                                                                                                H264, "0x60x640x360", "2.13"},
        {"none.mkv",                                          "null",                                                             H264,"0x0x640x360","1.78"},
        {"noise.mkv",                                   small + ",noise=alls=6:allf=t",                                                                                                   H264,"0x24x320x156","2.42"},
 // Black is 16, and 20 is still taken for it. The picture of a dark film is hardly above.
        {"dark.mkv",                                    "lutyuv=y=30," + Bars(0,                                                                                                    46,                                                                                                                                                         640,                                                                                                                                                                                                                                                                                                                                                                                                                                               314,                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                     "0x050505"), H264, "0x46x640x314", "2.39"},
        {"brighter.mkv",                                   Bars(0,                                                                                                   46, 640,                                                                                                                               314,                                                                                                                                                                          "0x080808"), H264, "0x0x640x360", "1.78"},
 // With full range black is 0, and 16 is picture.
        {"full.mkv",                                              wide + ",lutyuv=y='max(val-16,0)',setrange=full",                                                                                                                 H264 + "-color_range pc ","0x46x640x314","2.39"},
        {"fullbright.mkv",                                                 wide + ",setrange=full",                                                                                                          H264 + "-color_range pc ","0x0x640x360","1.78"},
        {"10bit.mkv",                                      wide,                                                                                                        H264 + "-pix_fmt yuv420p10le ","0x46x640x314","2.39"},
        {"gray.mkv",small,"-c:v ffv1 -pix_fmt gray -g 16 ","0x24x320x156",                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                     "2.42"                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                          },
        {"444.mkv",small,"-c:v libx265 -preset ultrafast -pix_fmt yuv444p12le -x265-params log-level=none:keyint=16:bframes=0 ",
         "0x24x320x156",                                                                                             "2.42"                                                                                                                                                                                                                                                                                 },
        {"palette.mkv",        small,"-c:v png -pix_fmt pal8 ","0x24x320x156","2.42"                                                                                                                                                                                                          },
 // 640 by 268 pixels of 4:3.
        {"anamorphic.mkv",                                                                                         wide + ",setsar=4/3",                                                                                                                                                                                                                                               H264,                                                                            "0x46x640x314","3.18"},
    };
    for (const Row& row : rows)
    {
        Make(row.Filters, row.Encoder, row.Name);
        ExpectFinding(row.Name, Sure(row.Crop, row.Aspect));
    }
}

TEST_F(BlackBars, ThatChangeAreWeighed)
{
    const auto until = [](int second) { return Bars(0, 46, 640, 314, "black", "lt(t," + std::to_string(second) + ")"); };
    const auto report = [](int score, int percent, int places, const std::string& firstOfFull)
    {
        return Finding("0x46x640x314", "2.39", score,
                       Line("0x46x640x314", "2.39", percent, places * PlaceHits, "00:00:46") +
                           Line("0x0x640x360", "1.78", 100 - percent, AllHits - places * PlaceHits, firstOfFull));
    };
    // Four of the eight places, 45 twice among them, and then six of them.
    MakeChanging(until(59), "half.mkv");
    ExpectFinding("half.mkv", report(2, 50, 4, "00:01:01"));
    MakeChanging(until(89), "longer.mkv");
    ExpectFinding("longer.mkv", report(3, 75, 6, "00:01:31"));
}

// Each place shows a rectangle of its own, so the result holds them all.
TEST_F(BlackBars, OfADarkFilmHoldEverything)
{
    std::string filters = "null";
    std::vector<std::string> lines;
    for (int place = 0; place < 7; ++place)
    {
        const int second = 15 * (place + 1);
        const int left = 40 * place;
        const int top = 20 * place;
        const std::string enable = "gte(t," + std::to_string(second - 1) + ")*lt(t," + std::to_string(second + 14) + ")";
        filters += "," + Bars(left, top, left + 200, top + 100, "black", enable);
        const std::string rect =
            std::to_string(left) + "x" + std::to_string(top) + "x" + std::to_string(left + 200) + "x" + std::to_string(top + 100);
        const bool isTwice = second == 45;
        const int first = second + 1;
        const std::string time =
            "00:0" + std::to_string(first / 60) + ":" + (first % 60 < 10 ? "0" : "") + std::to_string(first % 60);
        const std::string line = Line(rect, "2", isTwice ? 25 : 13, isTwice ? 2 * PlaceHits : PlaceHits, time);
        lines.insert(isTwice ? lines.begin() : lines.end(), line);
    }
    MakeChanging(filters, "dark.mkv");
    std::string all;
    for (const std::string& line : lines)
        all += line;
    ExpectFinding("dark.mkv", Finding("0x0x440x220", "2", 1, all));
}

TEST_F(BlackBars, AreNotFoundWhereThereIsNothingToLookAt)
{
    const std::string wide = Bars(0, 46, 640, 314);
    Make(wide, H264, "-t 44 short.mkv");
    ExpectFinding("short.mkv", Finding("0x0x0x0", "1.78"));
    Make(wide, H264, "-frames:v 1 frame.mkv");
    ExpectFinding("frame.mkv", Finding("0x0x0x0", "1.78"));
    Make("lutyuv=y=16", H264, "black.mkv");
    ExpectFinding("black.mkv", Finding("0x0x0x0", "1.78"));
    FilmFolder::Make(FilmSound + "-c:a flac sound.flac");
    ExpectFinding("sound.flac", Finding("0x0x0x0", ""));
}

TEST_F(BlackBars, OfAFilmOfUnknownLengthComeFromTwoPlaces)
{
    // The length of what is still being sent is not known.
    Make(Bars(0, 46, 640, 314), H264, "-live 1 unknown.mkv");
    ExpectFinding("unknown.mkv", Sure("0x46x640x314", "2.39", 2 * PlaceHits, "00:00:01"));
    // Without time stamps it cannot be moved either.
    FilmFolder::Make("-i unknown.mkv -c copy film.h264");
    ExpectFinding("film.h264", Sure("0x46x640x314", "2.39", PlaceHits, "<unknown>"));
}

TEST_F(BlackBars, AreLookedForInAllOfALongFilm)
{
    FilmFolder::Make("-f lavfi -i color=gray:s=640x360:r=1:d=160 -vf \"" + Bars(0, 46, 640, 314) + "\" " + H264 + "loop.nut");
    FilmFolder::Make("-stream_loop -1 -i loop.nut -c copy -t 9000 long.mkv");
    const std::string log = ExpectFinding("long.mkv", Sure("0x46x640x314", "2.39", AllHits, "00:00:48"));
    for (const int second : {45, 1125, 2250, 3375, 4500, 5625, 6750, 7875})
        EXPECT_THAT(log,
                    HasSubstr("64\tCZVVideoAnalyzeExtended::BlackBarDetection\tSeeking to " + std::to_string(second) + "\n"));
    EXPECT_THAT(log, Not(HasSubstr("Seeking to 0\n"))) << "the opening comes without being sought";
}

// Without its index a film is only known as far as it was read: the places after the opening begin where that ended, at the key
// frame at 7.5 seconds.
TEST_F(BlackBars, GoOnFromTheOpeningWhereThereIsNoIndex)
{
    Make(Bars(0, 46, 640, 314), "-c:v mpeg4 -q 2 -g 120 -bf 0 ", "whole.avi");
    ExpectFinding("whole.avi", Sure("0x46x640x314", "2.39", AllHits, "00:00:46"));
    const std::string film = FilmFolder::Read("whole.avi");
    FilmFolder::Write("cut.avi", film.substr(0, film.rfind("idx1")));
    EXPECT_THAT(FilmFolder::FindBlackBars("cut.avi").Properties, Contains(HasSubstr("first at 00:00:08")));
}

TEST_F(BlackBars, AreThoseOfTheMainSizeWhenAFilmChangesIt)
{
    const std::string bars = Bars(0, 46, 640, 314);
    const std::string first = "trim=end=59," + bars;
    const std::string second = "trim=start=59," + bars;
    MakeChanging(first, "first.ts");
    for (const auto& [change, hits, logged] :
         {std::tuple("scale=320:180", 4 * PlaceHits, true), std::tuple("format=yuv422p", AllHits, false)})
    {
        SCOPED_TRACE(change);
        MakeChanging(second + "," + change, "second.ts");
        FilmFolder::Write("film.ts", FilmFolder::Read("first.ts") + FilmFolder::Read("second.ts"));
        const std::string log = ExpectFinding("film.ts", Sure("0x46x640x314", "2.39", hits));
        const std::string line = "There are frames of 320x180 in a film of 640x360, which are left out";
        EXPECT_EQ(log.find(line) != std::string::npos, logged);
        EXPECT_EQ(log.find(line), log.rfind(line)) << "said once";
    }
}

TEST_F(BlackBars, AreFoundInADamagedFilm)
{
    Make(Bars(0, 46, 640, 314) + ",noise=alls=6:allf=t", H264, "film.ts");
    std::string film = FilmFolder::Read("film.ts");
    for (size_t part = 1; part < 8; ++part)
        film.replace(film.size() * part / 8, 5000, 5000, '\xff');
    FilmFolder::Write("film.ts", film);
    EXPECT_THAT(FilmFolder::FindBlackBars("film.ts").Properties, Contains("Video Crop=0x46x640x314"));
}

// A recording that begins in the middle, so that its size is only known from the first key frame on.
TEST_F(BlackBars, AreFoundInAFilmOfUnknownSize)
{
    FilmFolder::Make("-f lavfi -i color=gray:s=640x360:r=16:d=120 -vf " + Bars(0, 46, 640, 314) +
                     " -c:v libx264 -preset ultrafast -g 320 -bf 0 film.ts");
    const std::string film = FilmFolder::Read("film.ts");
    constexpr size_t PacketSize = 188;
    // The tables of the stream, and what stands after its first key frame.
    FilmFolder::Write("middle.ts", film.substr(0, 3 * PacketSize) + film.substr(film.size() / PacketSize / 40 * PacketSize));
    EXPECT_THAT(FilmFolder::FindBlackBars("middle.ts").Properties, Contains("Video Crop=0x46x640x314"));
}

// What a list of films says of its packets is no finding.
TEST_F(BlackBars, AreNotTakenFromWhatAFileSaysOfItsFrames)
{
    Make(Bars(0, 46, 640, 314), H264, "film.mkv");
    const std::string key = "file_packet_meta lavfi.cropdetect.";
    FilmFolder::Write("list.mkv", "ffconcat version 1.0\nfile film.mkv\n" + key + "x 2147483647\n" + key + "y 5\n" + key +
                                      "w 2147483647\n" + key + "h 50\n");
    ExpectFinding("list.mkv", Sure("0x46x640x314", "2.39", 2 * PlaceHits, "00:00:01"));
}

TEST_F(BlackBars, AreNotLookedForInWhatDoesNotOpen)
{
    FilmFolder::Write("text.mkv", "no film");
    FilmFolder::Write("disc.iso", "no film");
    for (const char* const name : {"missing.mkv", "text.mkv", "disc.iso"})
    {
        const FilmAnalysis analysis = FilmFolder::FindBlackBars(name);
        EXPECT_EQ(analysis.Run.Status, 255) << name;
        EXPECT_FALSE(analysis.HasResult) << name;
    }
}
}
