// What the player makes of the pixels of a film.

#include "siblings/player/PlayerFolder.h"

#include <gmock/gmock.h>

namespace
{

class CFrameFilterTest : public PlayerFolder
{
protected:
    static constexpr char Lossless[] = " -c:v libx264 -preset veryfast -qp 0 ";
};

// One colour, R 200, G 120 and B 40, written in each way and read back.
TEST_F(CFrameFilterTest, ReadsColoursAsTheyAreTagged)
{
    struct Row
    {
        const char* Name;
        const char* Size;
        std::string Filter;
        std::string Arguments;
    };
    const Row rows[] = {
        {"SD without a tag",   "320x180",  "scale=out_color_matrix=bt601,format=yuv420p",                 Lossless                                     },
        {"HD without a tag",   "1280x720", "scale=out_color_matrix=bt709,format=yuv420p",                 Lossless                                     },
        {"SD with BT.709",     "320x180",  "scale=out_color_matrix=bt709,format=yuv420p",                 std::string(Lossless) + "-colorspace bt709"  },
        {"HD with BT.601",     "1280x720", "scale=out_color_matrix=bt601,format=yuv420p",
         std::string(Lossless) + "-colorspace smpte170m"                                                                                               },
        {"BT.470 B/G",         "320x180",  "scale=out_color_matrix=bt601,format=yuv420p",                 std::string(Lossless) + "-colorspace bt470bg"},
        {"BT.2020",            "320x180",  "scale=out_color_matrix=bt2020,format=yuv420p10le",
         std::string(Lossless) + "-colorspace bt2020nc"                                                                                                },
        {"full range",         "320x180",  "scale=out_color_matrix=bt601:out_range=full,format=yuv420p",
         std::string(Lossless) + "-color_range pc"                                                                                                     },
        {"full range by name", "320x180",  "scale=out_color_matrix=bt601:out_range=full,format=yuvj422p", "-c:v mjpeg -qscale 1 "                      },
        {"RGB",                "320x180",  "format=gbrp",                                                 "-c:v libx264rgb -qp 0 "                     },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        Make(std::string("-f lavfi -i color=0xC87828:s=") + row.Size + ":d=0.2,format=gbrp -vf " + row.Filter + " " +
             row.Arguments + " film.mkv");
        const std::vector<int> colour = GetFrame("film.mkv", 0).At(0.5, 0.5);
        EXPECT_NEAR(colour[0], 40, 4);
        EXPECT_NEAR(colour[1], 120, 4);
        EXPECT_NEAR(colour[2], 200, 4);
    }
}

TEST_F(CFrameFilterTest, MakesPixelsSquareByEnlarging)
{
    struct Row
    {
        const char* Aspect;
        int32_t Width;
        int32_t Height;
    };
    const Row rows[] = {
        {"4/3", 427,  180},
        {"3/4", 320,  240},
        {"1/1", 320,  180},
        {"8/1", 2560, 180},
        {"9/1", 320,  180},
        {"1/9", 320,  180},
    };
    for (const Row& row : rows)
    {
        Make(std::string("-f lavfi -i color=s=320x180:d=0.2 -vf setsar=") + row.Aspect + Lossless + "film.mp4");
        const Frame frame = GetFrame("film.mp4", 0);
        EXPECT_EQ(frame.Width, row.Width) << row.Aspect;
        EXPECT_EQ(frame.Height, row.Height) << row.Aspect;
    }
}

// The matrices of ISO/IEC 14496-12: a, b, c and d of x' = ax + cy, y' = bx + dy. What the frame shows above its left corner when it has
// been turned as the player says is what the matrix brings there.
TEST_F(CFrameFilterTest, MirrorsFramesAndTellsHowToTurnThem)
{
    Make(std::string("-f lavfi -i \"color=red:s=320x180:d=0.2,drawbox=160:0:160:90:lime:fill,drawbox=0:90:160:90:blue:fill,"
                     "drawbox=160:90:160:90:white:fill\"") +
         Lossless + "-pix_fmt yuv444p film.mp4");
    const std::string film = WorkFolder::Read("film.mp4");
    const size_t matrix = film.find("tkhd") + 44;
    struct Row
    {
        int Values[4];
        int32_t Rotation;
        char Corners[5];  // of the delivered frame, row by row: R, G, B, W
    };
    const Row rows[] = {
        {{1, 0, 0, 1},   0,   "RGBW"},
        {{0, 1, -1, 0},  90,  "RGBW"},
        {{-1, 0, 0, -1}, 180, "RGBW"},
        {{0, -1, 1, 0},  270, "RGBW"},
        {{-1, 0, 0, 1},  0,   "GRWB"},
        {{1, 0, 0, -1},  180, "GRWB"},
        {{0, 1, 1, 0},   270, "GRWB"},
        {{0, -1, -1, 0}, 90,  "GRWB"},
    };
    for (const Row& row : rows)
    {
        std::string changed = film;
        const size_t places[] = {0, 4, 12, 16};
        for (size_t index = 0; index < 4; ++index)
        {
            const uint32_t value = static_cast<uint32_t>(row.Values[index]) << 16;
            for (size_t byte = 0; byte < 4; ++byte)
                changed[matrix + places[index] + byte] = static_cast<char>(value >> (24 - 8 * byte));
        }
        WorkFolder::Write("turned.mp4", changed);
        SCOPED_TRACE(testing::PrintToString(row.Values));
        CVideoPlayer player;
        ASSERT_TRUE(Open(player, "turned.mp4"));
        ZVStreamInfo info;
        ASSERT_TRUE(player.GetStreamInfo(0, info));
        EXPECT_EQ(info.Rotation, row.Rotation);
        const Frame frame = GetFrames(player, 0).at(0);
        std::string corners;
        for (const double y : {0.1, 0.9})
            for (const double x : {0.1, 0.9})
            {
                const std::vector<int> colour = frame.At(x, y);
                corners += colour[0] > 128 && colour[1] > 128 ? 'W' : colour[0] > 128 ? 'B' : colour[1] > 128 ? 'G' : 'R';
            }
        EXPECT_EQ(corners, row.Corners);
    }
}

// Of a moving edge the fields show two places; in a whole frame two rows beside each other differ as the picture does.
TEST_F(CFrameFilterTest, TakesTheCombOutOfInterlacedFrames)
{
    Make("-f lavfi -i \"color=black:s=720x576:r=50:d=3\" -f lavfi -i color=white:s=200x400:r=50:d=3 -filter_complex "
         "\"[0][1]overlay=x='mod(n*16,520)':y=88,tinterlace=interleave_top,fieldorder=tff\" -r 25 -c:v libx264 -preset veryfast "
         "-flags +ildct+ilme -x264-params tff=1 film.mp4");
    const Frame frame = GetFrame("film.mp4", 1'000);
    ASSERT_EQ(frame.Height, 576);
    int combs = 0;
    for (int row = 120; row < 460; row += 2)
        for (int column = 0; column < 720; ++column)
        {
            const auto at = [&](int y) { return frame.Pixels[static_cast<size_t>((y * 720 + column) * 4)]; };
            combs += std::abs(at(row) - at(row + 1)) > 100 && std::abs(at(row) - at(row + 2)) < 30 ? 1 : 0;
        }
    // Of the film as it is, more than 2,000.
    EXPECT_LT(combs, 50);
}

// A chart is brought into high dynamic range by the definitions of BT.2100, its white at 203 candelas, and must come out as it was.
TEST_F(CFrameFilterTest, ShowsHighDynamicRangeAsOnAnOrdinaryScreen)
{
    const std::string chart =
        "-f lavfi -i \"smptehdbars=s=1280x720:r=25:d=0.4,drawbox=0:500:1280:60:0xC89678:fill\" -vf format=yuv444p,";
    const std::string toHDR = "setparams=colorspace=bt709:color_trc=bt709:color_primaries=bt709:range=tv,zscale=t=linear:npl=203,"
                              "format=gbrpf32le,zscale=p=bt2020,zscale=t=";
    Make(chart + "setparams=colorspace=bt709" + Lossless + "-colorspace bt709 sdr.mkv");
    struct Row
    {
        const char* Film;
        std::string Arguments;
    };
    const std::string hevc =
        ":npl=203:m=bt2020nc:r=tv,format=yuv420p10le -c:v libx265 -x265-params log-level=none:crf=8:colorprim=bt2020:"
        "colormatrix=bt2020nc:transfer=";
    const Row rows[] = {
        {"hdr10.mkv", "smpte2084" + hevc + "smpte2084:max-cll=1000,400"},
        {"plain.mkv", "smpte2084" + hevc + "smpte2084"                 },
    };
    const Frame original = GetFrame("sdr.mkv", 0);
    // Gray, light gray, yellow, cyan, green, skin, dark gray.
    const std::pair<double, double> places[] = {
        {0.05, 0.1 },
        {0.2,  0.1 },
        {0.3,  0.1 },
        {0.42, 0.1 },
        {0.52, 0.1 },
        {0.5,  0.74},
        {0.05, 0.95}
    };
    for (const Row& row : rows)
    {
        Make(chart + toHDR + row.Arguments + " " + row.Film);
        const Frame frame = GetFrame(row.Film, 0);
        ASSERT_EQ(frame.Height, 720);
        for (const auto& [x, y] : places)
            for (size_t channel = 0; channel < 3; ++channel)
                EXPECT_NEAR(frame.At(x, y)[channel], original.At(x, y)[channel], 8) << row.Film << " " << x << " " << y;
        // The white of the chart.
        EXPECT_NEAR(frame.At(0.4, 0.95)[1], original.At(0.4, 0.95)[1], 25) << row.Film;
    }
}
}
