#include "siblings/player/CVideoPlayer.h"

#include "disc/dvd/DvdBytes.h"
#include "disc/recording/StubBytes.h"
#include "siblings/player/PlayerFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace
{
using testing::ElementsAre;

class CVideoPlayerTest : public PlayerFolder
{
protected:
    // A film of 24 seconds at 25 frames a second, whose frames show their numbers: twelve stripes, each white for a one.
    static void MakeNumbered(const std::string& arguments)
    {
        Make("-f lavfi -i \"color=black:s=192x48:r=25:d=24,format=yuv420p,"
             "geq=lum='if(bitand(floor(N/pow(2,11-floor(X/(W/12)))),1),235,16)':cb=128:cr=128\" " +
             arguments);
    }

    static int GetNumber(const Frame& frame)
    {
        if (frame.Pixels.empty())
            return -1;
        int number = 0;
        for (int stripe = 0; stripe < 12; ++stripe)
            number = number * 2 + (frame.At((stripe + 0.5) / 12, 0.5)[1] > 128 ? 1 : 0);
        return number;
    }
};

TEST_F(CVideoPlayerTest, ShowsTheFrameOfATime)
{
    const std::string h264 = "-c:v libx264 -preset veryfast ";
    MakeNumbered(h264 + "-g 100 -bf 3 film.mkv");
    struct Row
    {
        const char* Film;
        std::string Arguments;
    };
    const Row rows[] = {
        {"film.mkv",  ""                                                         },
        {"film.mp4",  "-c copy"                                                  },
        {"film.flv",  "-c copy"                                                  },
        {"film.ts",   "-c copy"                                                  },
        {"late.ts",   "-c copy -output_ts_offset 5000"                           },
        {"late.mkv",  "-c copy -output_ts_offset 7"                              },
        {"film.h264", "-c copy"                                                  },
        {"open.ts",   h264 + "-x264-params open-gop=1 -g 60 -bf 3"               },
        {"film.mpg",  "-c:v mpeg2video -qscale 2 -g 15 -bf 2"                    },
        {"mpeg2.ts",  "-c:v mpeg2video -qscale 2 -g 15 -bf 2"                    },
        {"hevc.mkv",  "-c:v libx265 -x265-params log-level=none:open-gop=1 -g 50"},
        {"hevc.ts",   "-c:v libx265 -x265-params log-level=none:open-gop=1 -g 50"},
        {"film.webm", "-c:v libvpx-vp9 -g 120 -cpu-used 8"                       },
        {"film.avi",  "-c:v mjpeg"                                               },
        {"film.wmv",  "-c:v wmv2"                                                },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Film);
        if (!row.Arguments.empty())
            Make("-i film.mkv " + row.Arguments + " " + row.Film);
        CVideoPlayer player;
        ASSERT_TRUE(Open(player, row.Film));
        // One player, so that each place is reached from another one. Frame 100 is a key frame of some, frame 99 the last before it.
        for (const int64_t time : {10'010, -3'000, 3'999, 4'000, 20'400, 39, 20'040})
        {
            const std::vector<Frame> frames = GetFrames(player, time);
            ASSERT_EQ(frames.size(), 1u) << time;
            EXPECT_EQ(GetNumber(frames[0]), std::max<int64_t>(time, 0) / 40) << time;
        }
    }
    // The first second has sound alone.
    Make("-itsoffset 1 -i film.mkv -f lavfi -i sine=d=24 -c:v copy -c:a pcm_s16le sound.mkv");
    EXPECT_EQ(GetNumber(GetFrame("sound.mkv", 5'000)), 100);
    // A container that cannot tell times before 0 tells none.
    Make("-i film.mkv -c copy -output_ts_offset -1000 -avoid_negative_ts disabled untimed.mkv");
    EXPECT_EQ(GetNumber(GetFrame("untimed.mkv", 400)), 10);
    for (const char* const film : {"film.mkv", "film.mp4", "film.ts", "film.h264"})
        EXPECT_EQ(GetNumber(GetFrame(film, INT64_MAX)), 599) << film;
}

// Of a film whose frames come seldom, and then have the usual duration.
TEST_F(CVideoPlayerTest, ShowsTheFrameThatStaysOnScreen)
{
    MakeNumbered("-vf \"select='not(mod(n,40))'\" -vsync vfr -c:v libx264 -preset veryfast -bf 2 film.mkv");
    Make("-i film.mkv -c copy film.mp4");
    for (const char* const film : {"film.mkv", "film.mp4"})
    {
        CVideoPlayer player;
        ASSERT_TRUE(Open(player, film));
        for (const int64_t time : {0, 1'599, 1'600, 9'000})
        {
            const int first = static_cast<int>(time / 1'600 * 40);
            std::vector<int> numbers;
            for (const Frame& frame : GetFrames(player, time, 3))
                numbers.push_back(GetNumber(frame));
            EXPECT_THAT(numbers, ElementsAre(first, first + 40, first + 80)) << film << " " << time;
        }
    }
}

// The time stamps of a DVD begin anew in the middle.
TEST_F(CVideoPlayerTest, PlaysTheTitleOfADVD)
{
    MakeNumbered("-c:v mpeg2video -qscale 2 -g 5 whole.mpg");
    std::filesystem::create_directory("VIDEO_TS");
    Make("-t 12 -i whole.mpg -c copy VIDEO_TS/VTS_01_1.VOB");
    Make("-ss 12 -i whole.mpg -c copy VIDEO_TS/VTS_01_2.VOB");
    WorkFolder::Write("VIDEO_TS/VIDEO_TS.IFO", "DVDVIDEO-VMG");
    WorkFolder::Write("VIDEO_TS/VTS_01_0.IFO", DvdBytes::File({{std::string("\x00\x00\x24\x40", 4)}}));
    CVideoPlayer player;
    ASSERT_TRUE(Open(player, "VIDEO_TS/VIDEO_TS.IFO"));
    EXPECT_EQ(player.GetDuration(), 24'000);
    for (const int second : {5, 18, 23})
        EXPECT_NEAR(GetNumber(GetFrames(player, second * 1000)[0]), second * 25, 50) << second;
}

TEST_F(CVideoPlayerTest, PlaysTheStreamOfARecordingsStub)
{
    MakeNumbered("-t 5 -c:v libx264 film.ts");
    WorkFolder::Write("recording.ztv", StubBytes::Stub(2, U"film.ts"));
    EXPECT_EQ(GetNumber(GetFrame("recording.ztv", 2'000)), 50);
    CVideoPlayer player;
    for (const std::u32string_view stream : {U"recording.ztv", U"http://127.0.0.1/film.ts", U""})
    {
        WorkFolder::Write("recording.ztv", StubBytes::Stub(2, stream));
        EXPECT_FALSE(Open(player, "recording.ztv"));
    }
}

TEST_F(CVideoPlayerTest, RefusesWhatItCannotPlay)
{
    Make("-f lavfi -i sine=d=1 sound.mp3");
    WorkFolder::Write("text.mkv", "no film");
    ASSERT_EQ(mkfifo("pipe.mkv", 0644), 0);
    CVideoPlayer player;
    for (const char* const film : {"text.mkv", "pipe.mkv", "missing.mkv", "disc.iso"})
        EXPECT_FALSE(Open(player, film)) << film;
    PlayerOutput output;
    player.SetVideoOutput(&output);
    EXPECT_FALSE(player.Play(0)) << "nothing is open";
    ASSERT_TRUE(Open(player, "sound.mp3"));
    EXPECT_FALSE(player.Play(0)) << "a sound has no frames";
    Make("-f lavfi -i testsrc2=d=1 film.mkv");
    ASSERT_TRUE(Open(player, "film.mkv"));
    output.SupportedFormat = 0;
    EXPECT_FALSE(player.Play(0)) << "nobody takes the frames";
}
}
