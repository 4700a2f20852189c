#include "FilmFolder.h"

#include "support/PropertyLines.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr char Succeeded[] = "Total time: [0-9]+ ms\nResult: 0\n";
constexpr char Failed[] = "Total time: [0-9]+ ms\nResult: -1\n";

// What is the same for most films that are made here.
const std::string PlainPicture = "Video Scan=Progressive\nAspect Ratio=1.78\nColor Space=\nColor Depth=8\n";
const std::string Picture = PlainPicture + "Video Codec=H264 High L4.1\nVideo Bitrate=0\n";
const std::string Deep = "Video Scan=Progressive\nAspect Ratio=1.78\nColor Space=BT.2020\nColor Depth=10\nVideo Bitrate=0\n"
                         "Video Codec=HEVC Main 10 L5.1\n";

// One sound track with neither title nor language.
std::string Sound(const std::string& codec, const std::string& channels, const std::string& bitrate)
{
    return "Audio Streams=1\nAudio Codec=" + codec + ";\nAudio Channels=" + channels + ";\nAudio Bitrate=" + bitrate +
           ";\nAudio Sample Rate=48000;\nAudio Title=;\nAudio Language=;\n";
}

// A value for which "*" is expected, since it hangs on the encoder, becomes that when it is a number above zero.
std::set<std::string> WithStars(const std::set<std::string>& lines, const std::set<std::string>& expected)
{
    std::set<std::string> result;
    for (const std::string& line : lines)
    {
        const size_t value = line.find('=') + 1;
        const bool isNumber = line.find_first_not_of("0123456789", value) == std::string::npos && line.substr(value, 1) > "0";
        const std::string starred = isNumber ? line.substr(0, value) + "*" : line;
        result.insert(expected.contains(starred) ? starred : line);
    }
    return result;
}

// A picture subtitle as Blu-rays have them (PGS): one rectangle, shown for two seconds.
class PictureSubtitle
{
public:
    static std::string Make()
    {
        // Screen, frame rate, number, start of an epoch; then the objects that are shown.
        const std::string screen = Bytes({1, 64, 0, 180, 16});
        const std::string line = std::string(8, 1) + Bytes({0, 0});
        return Segment(0, 0x16, screen + Bytes({0, 0, 0x80, 0, 0, 1, 0, 0, 0, 0, 0, 10, 0, 10})) +
               Segment(0, 0x17, Bytes({1, 0, 0, 10, 0, 10, 0, 8, 0, 2})) +
               Segment(0, 0x14, Bytes({0, 0, 1, 235, 128, 128, 255})) +
               Segment(0, 0x15, Bytes({0, 0, 0, 0xc0, 0, 0, 24, 0, 8, 0, 2}) + line + line) + Segment(0, 0x80, "") +
               Segment(2, 0x16, screen + Bytes({0, 1, 0x80, 0, 0, 0})) + Segment(2, 0x80, "");
    }

private:
    static std::string Bytes(std::initializer_list<int> values)
    {
        std::string bytes;
        for (const int value : values)
            bytes.push_back(static_cast<char>(value));
        return bytes;
    }
    static std::string Segment(int seconds, int type, const std::string& content)
    {
        const int time = seconds * 90000;
        const int size = static_cast<int>(content.size());
        return "PG" + Bytes({0, time >> 16, time >> 8, time, 0, 0, 0, 0, type, size >> 8, size}) + content;
    }
};

class AnalyzeExtended : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    void ExpectFilm(const std::string& name, const std::string& properties) const
    {
        const FilmAnalysis analysis = m_folder.Analyze(name);
        EXPECT_EQ(analysis.Run.Status, 0);
        EXPECT_THAT(analysis.Run.Output, MatchesRegex(Succeeded));
        EXPECT_EQ(analysis.Run.Error, "");
        const std::set<std::string> expected = GetLines(properties);
        EXPECT_EQ(WithStars(analysis.Properties, expected), expected) << analysis.Log;
    }

    // The reason stands in the log under the name of who found it.
    void ExpectFailure(const std::string& name, const std::string& reason) const
    {
        const FilmAnalysis analysis = m_folder.Analyze(name);
        EXPECT_EQ(analysis.Run.Status, 255);
        EXPECT_THAT(analysis.Run.Output, MatchesRegex(Failed));
        EXPECT_EQ(analysis.Run.Error, "");
        EXPECT_FALSE(analysis.HasResult);
        EXPECT_THAT(analysis.Log, HasSubstr("CZVVideoAnalyzeExtended::AnalyzeFile\t" + reason));
    }

    FilmFolder m_folder;
};

TEST_F(AnalyzeExtended, TellsWhatAFilmWasMadeOf)
{
    FilmFolder::Write("text.srt", "1\n00:00:00,000 --> 00:00:01,000\nOne\n");
    FilmFolder::Write("pictures.sup", PictureSubtitle::Make());

    const std::string sounds = "Audio Streams=2\nAudio Codec=AC-3;AC-3;\nAudio Channels=2;6;\nAudio Bitrate=192;384;\n"
                               "Audio Sample Rate=48000;48000;\n";
    const std::string x265 = FilmPicture + "-c:v libx265 -preset ultrafast -pix_fmt yuv420p10le "
                                           "-x265-params log-level=none:level-idc=5.1:colorprim=bt2020:colormatrix=bt2020nc:";
    const std::string display = "hdr10=1:max-cll=800,400:'master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)"
                                "L(10000000,1)' ";
    const std::string light = "HDR Mastering Luminance=1000\nHDR Mastering Color Space=Display P3\nHDR Peak Luminance=800\n"
                              "HDR Average Luminance=400\n";
    const std::string hdr = "HDR Format=HDR10\n" + light;
    const std::string layers = FilmPicture +
                               "-map 1 -map 0 -c:v libx265 -preset ultrafast -pix_fmt yuv420p10le "
                               "-filter:v:1 setsar=2 -x265-params:v:0 log-level=none:level-idc=5.1 "
                               "-x265-params:v:1 log-level=none:" +
                               display;
    const std::string layered = "Video Codec=HEVC Main 10 L5.1\nVideo Bitrate=0\nColor Depth=10\nColor Space=\n"
                                "Video Scan=Progressive\nAspect Ratio=1.78\n";
    const std::string copy = "-map 0 -c copy ";
    // Made in this order: a film may be made of those above it.
    // clang-format off
    const struct
    {
        const char* Name;
        std::string Arguments;
        std::string Expected;
    } rows[] = {
        {"h264.mkv",
         FilmPicture + FilmSound + FilmSound + "-map 0 -map 1 -map 2 " + FilmH264 +
             "-c:a ac3 -ac:a:0 2 -b:a:0 192k -ac:a:1 6 -b:a:1 384k -metadata:s:a:0 language=ger -metadata:s:a:1 language=en "
             "-metadata:s:a:0 'title=Für alle' ",
         Picture + sounds + "Audio Title=Für alle;;\nAudio Language=German;English;\n"},
        {"h264.mp4", "-i h264.mkv " + copy,
         PlainPicture + sounds +
             "Video Codec=H264 High L4.1\nVideo Bitrate=*\nAudio Title=;;\nAudio Language=German;;\n"},
        {"h264.avi", "-i h264.mkv -bsf:v h264_mp4toannexb " + copy,
         PlainPicture + sounds +
             "Video Codec=H264 High L4.1\nVideo Bitrate=*\nAudio Title=Für alle;;\nAudio Language=;;\n"},
        {"h264.ts", "-i h264.mkv " + copy, Picture + sounds + "Audio Title=;;\nAudio Language=German;;\n"},
        {"h264.m2ts", "-i h264.mkv -f mpegts -mpegts_m2ts_mode 1 " + copy,
         Picture + sounds + "Audio Title=;;\nAudio Language=German;;\n"},
        {"h264.flv", FilmPicture + FilmSound + FilmH264 + "-b:v 300k -c:a aac -ac 2 -b:a 128k ",
         PlainPicture + Sound("AAC LC", "2", "128") + "Video Codec=H264 High L4.1\nVideo Bitrate=300\n"},
        {"flv1.flv", FilmPicture + FilmSound + "-c:v flv -b:v 300k -c:a libmp3lame -ar 44100 -b:a 96k ",
         PlainPicture + "Video Codec=FLV1\nVideo Bitrate=300\nAudio Streams=1\nAudio Codec=MP3;\nAudio Channels=1;\n"
                        "Audio Bitrate=96;\nAudio Sample Rate=44100;\nAudio Title=;\nAudio Language=;\n"},
        {"hdr10.mkv", x265 + "transfer=smpte2084:" + display, Deep + hdr},
        {"hdr10.mp4", "-i hdr10.mkv -c copy ",
         "Video Scan=Progressive\nAspect Ratio=1.78\nColor Space=BT.2020\nColor Depth=10\nVideo Bitrate=*\n"
         "Video Codec=HEVC Main 10 L5.1\n" +
             hdr},
        {"hlg.mkv", x265 + "transfer=arib-std-b67 ", Deep + "HDR Format=HLG\n"},
        {"interlaced.ts",
         "-f lavfi -i testsrc2=s=720x576:r=25:d=3 -c:v mpeg2video -pix_fmt yuv420p -vf setfield=tff -flags +ildct+ilme "
         "-aspect 16:9 -color_primaries bt470bg ",
         "Video Codec=MPEG-2 Main\nVideo Bitrate=0\nColor Depth=8\nColor Space=BT.601 (PAL)\nVideo Scan=Interlaced\n"
         "Aspect Ratio=1.78\n"},
        {"vp9.webm", FilmPicture + "-c:v libvpx-vp9 -deadline realtime -cpu-used 8 ",
         PlainPicture + "Video Codec=VP9 Profile 0\nVideo Bitrate=0\n"},
        {"mpeg4.avi", FilmPicture + FilmSound + "-c:v mpeg4 -c:a libmp3lame -b:a 128k ",
         PlainPicture + Sound("MP3", "1", "128") + "Video Codec=MPEG4 Simple Profile\nVideo Bitrate=*\n"},
        {"prores.mov", FilmPicture + FilmSound + "-c:v prores_ks -profile:v 3 -c:a pcm_s16le -ac 2 ",
         "Video Codec=ProRes HQ\nVideo Bitrate=*\nColor Depth=10\nColor Space=\nVideo Scan=Progressive\nAspect Ratio=1.78\n" +
             Sound("PCM_S16LE", "2", "1536")},
        {"wmv2.wmv", FilmPicture + FilmSound + "-c:v wmv2 -c:a wmav2 -b:a 128k ",
         PlainPicture + Sound("WMAV2", "1", "128") + "Video Codec=WMV2\nVideo Bitrate=0\n"},
        {"theora.ogv", FilmPicture + "-c:v libtheora ", PlainPicture + "Video Codec=Theora\nVideo Bitrate=0\n"},

        // 320 by 180 with pixels of 4:3 is 64:27.
        {"anamorphic.mkv", FilmPicture + "-vf setsar=4/3 " + FilmH264,
         "Video Codec=H264 High L4.1\nVideo Bitrate=0\nColor Depth=8\nColor Space=\nVideo Scan=Progressive\nAspect Ratio=2.37\n"},
        {"anamorphic.ts", "-i anamorphic.mkv -c copy ",
         "Video Codec=H264 High L4.1\nVideo Bitrate=0\nColor Depth=8\nColor Space=\nVideo Scan=Progressive\nAspect Ratio=2.37\n"},
        // Where the container says otherwise than the frames, its kind decides; and that is told by an extension in lower case.
        {"square.mkv", "-i anamorphic.mkv -c copy -aspect 16:9 ", Picture},
        {"square.MKV", "-i square.mkv -c copy -f matroska ",
         "Video Codec=H264 High L4.1\nVideo Bitrate=0\nColor Depth=8\nColor Space=\nVideo Scan=Progressive\nAspect Ratio=2.37\n"},

        {"bps.mkv", "-i h264.mkv -map 0:0 -c copy -metadata:s:v:0 BPS-eng=1500900 ",
         PlainPicture + "Video Codec=H264 High L4.1\nVideo Bitrate=1500\n"},
        {"sounds.mkv",
         FilmSound + "-map 0 -map 0 -map 0 -map 0 -map 0 -map 0 -strict -2 -c:a:0 dca -c:a:1 truehd -c:a:2 eac3 -c:a:3 libopus "
                     "-c:a:4 flac -c:a:5 aac -b:a:2 224k -ac:a:0 6 -ac:a:1 2 ",
         "Audio Streams=6\nAudio Codec=DTS;TrueHD;E-AC3;Opus;FLAC;AAC LC;\nAudio Channels=6;2;1;1;1;1;\n"
         "Audio Sample Rate=48000;48000;48000;48000;48000;48000;\nAudio Bitrate=1411;;224;;;;\nAudio Title=;;;;;;\n"
         "Audio Language=;;;;;;\n"},
        {"subtitles.mkv",
         "-i h264.mkv -i text.srt -i pictures.sup -map 0:0 -map 1 -map 1 -map 2 -map 2 -map 2 -c:v copy -c:s:0 srt -c:s:1 ass "
         "-c:s:2 copy -c:s:3 dvdsub -c:s:4 dvbsub -metadata:s:s:0 language=fre -metadata:s:s:1 language=pt "
         "-metadata:s:s:1 'title=Notes' -metadata:s:s:2 language=eng -metadata:s:s:3 language=und ",
         Picture + "Subtitle Streams=5\nSubtitle Codec=SRT;ASS;PGS;VobSub;DVBSub;\nSubtitle Title=;Notes;;;;\n"
                   "Subtitle Language=French;Portuguese;English;;;\n"},
        {"subtitles.mp4", "-i h264.mkv -i text.srt -map 0:0 -map 1 -c:v copy -c:s mov_text -metadata:s:s:0 language=jpn ",
         PlainPicture + "Video Codec=H264 High L4.1\nVideo Bitrate=*\nSubtitle Streams=1\nSubtitle Codec=TX3G;\n"
                        "Subtitle Title=;\nSubtitle Language=Japanese;\n"},

        // What else is a picture does not take the film's place.
        {"cover.jpg", "-f lavfi -i testsrc2=s=1280x960 -frames:v 1 ",
         "Video Codec=MJPEG Baseline\nVideo Bitrate=0\nColor Depth=8\nColor Space=\nVideo Scan=Progressive\nAspect Ratio=1.33\n"},
        {"cover.mkv", "-i h264.mkv -map 0:0 -c copy -attach cover.jpg -metadata:s:t mimetype=image/jpeg ", Picture},
        {"cover.mp4", "-i h264.mkv -i cover.jpg -map 1 -map 0:0 -c copy -disposition:v:0 attached_pic ",
         PlainPicture + "Video Codec=H264 High L4.1\nVideo Bitrate=*\n"},
        {"cover.mp3",
         FilmSound + "-i cover.jpg -map 0 -map 1 -c:a libmp3lame -b:a 96k -c:v copy -disposition:v:0 attached_pic ",
         Sound("MP3", "1", "96")},
        // Of two as large the first is the film.
        {"twice.mkv", FilmPicture + "-i h264.mkv -map 0 -map 1:0 -c:v:0 mpeg4 -c:v:1 copy ",
         PlainPicture + "Video Codec=MPEG4 Simple Profile\nVideo Bitrate=0\n"},
        // A second layer is as large as the film or half as large. What its frames say of the light counts, and nothing else.
        {"layers.mkv", "-f lavfi -i testsrc2=s=160x90:r=25:d=3 " + layers, layered + light},
        {"layers.ts", "-i layers.mkv -map 0 -c copy ", layered + light},
        {"narrow.mkv", "-f lavfi -i testsrc2=s=158x90:r=25:d=3 " + layers, layered},
        {"flat.mkv", "-f lavfi -i testsrc2=s=160x88:r=25:d=3 " + layers, layered},
        {"sound.flac", FilmSound + "-c:a flac ", Sound("FLAC", "1", "")},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        FilmFolder::Make(row.Arguments + row.Name);
        ExpectFilm(row.Name, row.Expected);
    }
}

// More sizes than frames share memory for.
TEST_F(AnalyzeExtended, FollowsAFilmThatChangesItsSize)
{
    for (const std::string codec : {"264", "265"})
    {
        SCOPED_TRACE(codec);
        std::string film;
        for (const char* size : {"320x180", "352x198", "384x216", "416x234", "448x252", "480x270", "320x180"})
        {
            FilmFolder::Make(std::string("-f lavfi -i testsrc2=r=25:d=0.08:s=") + size + " -c:v libx" + codec +
                             " -preset veryfast part." + (codec == "264" ? "h264" : "hevc"));
            film += FilmFolder::Read(codec == "264" ? "part.h264" : "part.hevc");
        }
        FilmFolder::Write("film." + codec, film);
        const FilmAnalysis analysis = m_folder.Analyze("film." + codec);
        EXPECT_THAT(analysis.Properties, testing::IsSupersetOf(GetLines(PlainPicture)));
        EXPECT_EQ(analysis.Log.find("No frame came"), std::string::npos);
    }
}

TEST_F(AnalyzeExtended, TellsOfAV1WhereItCanBeMade)
{
    for (const char* encoder : {"libsvtav1 -preset 12 ", "libaom-av1 -cpu-used 8 -usage realtime "})
    {
        if (system((std::string("ffmpeg -v error -y -f lavfi -i testsrc2=s=320x180:r=25:d=3 -pix_fmt yuv420p10le -c:v ") +
                    encoder + "av1.mkv >/dev/null 2>&1")
                       .c_str()) != 0)
            continue;
        ExpectFilm("av1.mkv", "Video Codec=AV1 Main\nVideo Bitrate=0\nColor Depth=10\nColor Space=\nVideo Scan=Progressive\n"
                              "Aspect Ratio=1.78\n");
        return;
    }
    GTEST_SKIP() << "ffmpeg has no encoder for AV1";
}

TEST_F(AnalyzeExtended, TellsTheBitratesThatOtherToolsMeasure)
{
    FilmFolder::Make(FilmPicture + FilmSound + FilmH264 + "-c:a aac film.mp4");
    FilmFolder::RunProgram("mkvmerge film.mp4 -o film.mkv");
    for (const char* name : {"film.mp4", "film.mkv"})
    {
        SCOPED_TRACE(name);
        int64_t kilobits[2] = {};
        for (const int index : {0, 1})
        {
            const std::string stream = std::to_string(index);
            FilmFolder::RunProgram("ffprobe -v error -of csv=p=0 -select_streams " + stream +
                                   " -show_entries packet=size film.mp4 -o sizes");
            std::istringstream sizes(FilmFolder::Read("sizes"));
            int64_t bytes = 0;
            for (int64_t size = 0; sizes >> size; sizes.ignore(10, '\n'))
                bytes += size;
            kilobits[index] = bytes * 8 / 3000;
        }
        const std::set<std::string> properties = m_folder.Analyze(name).Properties;
        // The sound is a little longer than the picture, so its rate is a little lower.
        EXPECT_THAT(properties, testing::Contains("Video Bitrate=" + std::to_string(kilobits[0])));
        bool isNear = false;
        for (int64_t rate = kilobits[1] - 2; rate <= kilobits[1]; ++rate)
            isNear = isNear || properties.contains("Audio Bitrate=" + std::to_string(rate) + ";");
        EXPECT_TRUE(isNear) << kilobits[1] << testing::PrintToString(properties);
    }
}

// No encoder at hand makes Dolby Vision, so its record takes the place of another box of the same size.
TEST_F(AnalyzeExtended, TellsTheDolbyVisionProfileOfTheContainer)
{
    FilmFolder::Make(FilmPicture + "-c:v libx265 -preset ultrafast -pix_fmt yuv420p10le "
                                   "-x265-params log-level=none:level-idc=5.1 plain.mkv");
    FilmFolder::RunProgram("mkvmerge --max-luminance 0:1000 --min-luminance 0:0.0001 --chromaticity-coordinates "
                           "0:0.708,0.292,0.170,0.797,0.131,0.046 --white-colour-coordinates 0:0.3127,0.329 plain.mkv -o m.mkv");
    const std::string common = "Video Scan=Progressive\nAspect Ratio=1.78\nColor Depth=10\nVideo Codec=HEVC Main 10 L5.1\n";
    ExpectFilm("m.mkv", common + "Color Space=\nVideo Bitrate=*\nHDR Mastering Luminance=1000\n"
                                 "HDR Mastering Color Space=BT.2020\n");
    FilmFolder::Make("-i m.mkv -c copy m.mp4");
    const std::string film = FilmFolder::Read("m.mp4");
    const size_t box = film.find("mdcv");
    ASSERT_NE(box, std::string::npos);
    // Version, profile of 7 bits, level of 6, flags for metadata and base layer; compatibility of 4 bits.
    // clang-format off
    const struct
    {
        const char* Name;
        std::string Record;
        std::string Expected;
    } rows[] = {
        {"profile 8.1", {"dvvC\1\0\x10\x35\x10", 9}, "Color Space=\nHDR Format=DolbyVision Profile 8.1, HDR10-compatible\n"},
        {"profile 5",   {"dvcC\1\0\x0a\x35\0", 9},   "Color Space=BT.2020\nHDR Format=DolbyVision Profile 5 (ICtCp)\n"},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        std::string changed = film;
        FilmFolder::Write("dovi.mp4", changed.replace(box, 28, row.Record + std::string(28 - row.Record.size(), '\0')));
        ExpectFilm("dovi.mp4", common + "Video Bitrate=*\n" + row.Expected);
    }
}

TEST_F(AnalyzeExtended, TellsWhatIsLeftOfADamagedFilm)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "whole.mkv");
    FilmFolder::Make("-f lavfi -i testsrc2=s=64x64:r=25:d=60 -c:v mpeg4 long.mkv");
    const std::string film = FilmFolder::Read("whole.mkv");
    FilmFolder::Write("cut.mkv", film.substr(0, film.size() / 2));
    std::string unknown = film;
    FilmFolder::Write("unknown.mkv", unknown.replace(unknown.find("V_MPEG4/ISO/AVC"), 15, "V_MPEG4/ISO/XVC"));
    // Every byte of the pictures is noise, as in a scrambled recording.
    FilmFolder::Make("-i whole.mkv -c copy -bsf:v noise=1 noise.mkv");
    FilmFolder::Make("-i long.mkv -c copy -bsf:v noise=1 longnoise.mkv");
    // clang-format off
    const struct
    {
        const char* Name;
        std::string Expected;
        const char* Reason;
    } rows[] = {
        {"cut.mkv", Picture, ""},
        {"unknown.mkv", "Video Codec=Unknown\nVideo Bitrate=0\nColor Space=\n", "There is no decoder for it: unknown.mkv"},
        {"noise.mkv", "Video Codec=H264\nVideo Bitrate=0\nColor Space=\nAspect Ratio=1.78\n", "No frame came out of 75 packets"},
        {"longnoise.mkv", "Video Codec=MPEG4 Simple Profile\nVideo Bitrate=0\nColor Space=\nAspect Ratio=1\n",
         "No frame came out of 1000 packets"},
    };
    // clang-format on
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const FilmAnalysis analysis = m_folder.Analyze(row.Name);
        EXPECT_EQ(analysis.Run.Status, 0);
        EXPECT_EQ(analysis.Run.Error, "");
        EXPECT_EQ(analysis.Properties, GetLines(row.Expected));
        EXPECT_THAT(analysis.Log, HasSubstr(row.Reason));
    }
}

TEST_F(AnalyzeExtended, RefusesWhatIsNoFilm)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mp4");
    const std::string film = FilmFolder::Read("film.mp4");
    FilmFolder::Write("cut.mp4", film.substr(0, film.size() / 2));
    FilmFolder::Write("text.txt", "No film, but a text.\n");
    FilmFolder::Write("empty.mkv", "");
    for (const char* name : {"film.iso", "film.ifo", "film.bdmv", "film.mpls", "film.bluray", "film.bluray3d"})
        fs::copy_file("film.mp4", name);
    fs::create_directory("folder.mkv");
    ASSERT_EQ(mkfifo("pipe.mkv", 0600), 0);
    fs::create_symlink("pipe.mkv", "link.mkv");

    const std::string disc = "A Blu-ray folder cannot be analyzed by this worker: ";
    const std::string image = "Disc images and DVD folders are not analyzed here: ";
    const std::string kind = "This is no file: ";
    const std::string missing = "The file does not open (No such file or directory): ";
    const std::string content = "The file does not open (Invalid data found when processing input): ";
    const struct
    {
        const char* Name;
        std::string Reason;
    } rows[] = {
        {"cut.mp4",                     content                   },
        {"text.txt",                    content                   },
        {"empty.mkv",                   content                   },
        {"folder.mkv",                  kind                      },
        {"pipe.mkv",                    kind                      },
        {"link.mkv",                    kind                      },
        {"/dev/zero",                   kind                      },
        {"missing.mkv",                 missing                   },
        {"missing/film.mkv",            missing                   },
        {"film.iso",                    image                     },
        {"film.ifo",                    image                     },
        {"film.bdmv",                   disc                      },
        {"film.mpls",                   disc                      },
        {"film.bluray",                 disc                      },
        {"film.bluray3d",               disc                      },
 // No name starts a protocol of the libraries but an address.
        {"concat:film.mp4|film.mp4",    missing                   },
        {"data:video/mp4;base64,AAAA",  missing                   },
        {"pipe:0",                      missing                   },
        {"http:film.mp4",               missing                   },
        {"http://127.0.0.1:1/film.mp4", "The file does not open ("},
        {"http://host.invalid/a.mp4",   "The file does not open ("},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const auto start = std::chrono::steady_clock::now();
        ExpectFailure(row.Name, row.Reason.ends_with(": ") ? row.Reason + std::string(row.Name).substr(0, 4) : row.Reason);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    }
}

TEST_F(AnalyzeExtended, TakesAFilmByAnyName)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    for (const char* name : {"\xff.mkv", "-film.mkv", "http:film.mkv", "concat:film.mkv|film.mkv", "file:film.mkv", "film%d.mkv",
                             "a b's (1).mkv", "f\xc3\xbcr\xe6\x97\xa5.mkv", "film.ISO", "film", "film.bdmv.mkv", "-", "%s%n"})
    {
        SCOPED_TRACE(name);
        fs::copy_file("film.mkv", name);
        // Without an extension that tells of Matroska the frames' aspect counts, which is the same here.
        ExpectFilm(name, Picture);
    }
    fs::create_symlink("film.mkv", "link.mkv");
    ExpectFilm("link.mkv", Picture);
}

TEST_F(AnalyzeExtended, WritesTheAspectInTheLocalesForm)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    if (system("locale -a | grep -qi '^de_DE.utf'") != 0)
        GTEST_SKIP() << "there is no German locale";
    EXPECT_THAT(m_folder.Analyze("film.mkv", {"LC_ALL=de_DE.UTF-8"}).Properties, testing::Contains("Aspect Ratio=1,78"));
}

TEST_F(AnalyzeExtended, FailsWithAResultThatCannotBeWritten)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    for (const char* result : {"film.mkv/result.xml", "/proc/result.xml", "."})
    {
        const WorkerRun run = RunWorker({"/AnalyzeVideoExtended", "film.mkv", result});
        EXPECT_EQ(run.Status, 255) << result;
        EXPECT_THAT(run.Output, testing::EndsWith("\nResult: -1\n")) << result;
    }
}

TEST_F(AnalyzeExtended, FailsWithoutTheCodecComponent)
{
    if (void* const library = dlopen("libavutil.so.59", RTLD_LAZY); library != nullptr)
    {
        dlclose(library);
        GTEST_SKIP() << "the system has libraries that take the component's place";
    }
    const std::string program = GetWorkerProgram();
    fs::create_directory("lone");
    for (const char* file : {"ZVWorker", "libZVTools.so"})
        fs::copy_file(fs::path(program).parent_path() / file, fs::path("lone") / file);
    setenv("ZV_WORKER_PROGRAM", fs::absolute("lone/ZVWorker").c_str(), 1);
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    const FilmAnalysis analysis = m_folder.Analyze("film.mkv");
    setenv("ZV_WORKER_PROGRAM", program.c_str(), 1);
    EXPECT_EQ(analysis.Run.Status, 255);
    EXPECT_THAT(analysis.Run.Output, testing::EndsWith("\nResult: -1\n"));
    EXPECT_FALSE(analysis.HasResult);
    EXPECT_THAT(analysis.Log, HasSubstr("CZVAVLibraries\tThe codec component is not in "));
    EXPECT_THAT(analysis.Log, HasSubstr("CZVAVLibraries\tThe codec libraries cannot be used: av_log_set_callback is missing"));
}
}
