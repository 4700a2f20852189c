#include "FilmFolder.h"

#include "LoneWorker.h"

#include <array>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{
namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::MatchesRegex;

const std::string HEVC = "HEVC Main 10 L5.1";

// What the analysis tells of a picture, which is that of most films that are made here.
struct Picture
{
    std::string Codec = "H264 High L4.1";
    std::string Bitrate = "0";
    std::string Depth = "8";
    std::string Space = "";
    std::string Aspect = "1.78";
    std::string Scan = "Progressive";

    operator std::string() const
    {
        return "Video Codec=" + Codec + "\nVideo Bitrate=" + Bitrate + "\nColor Depth=" + Depth + "\nColor Space=" + Space +
               "\nAspect Ratio=" + Aspect + "\nVideo Scan=" + Scan + "\n";
    }
    std::string operator+(const std::string& others) const { return std::string(*this) + others; }
};

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

class AnalyzeExtended : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    // Either there is a result, or there is not.
    static FilmAnalysis Analyze(const std::string& name, bool succeeds)
    {
        const FilmAnalysis analysis = FilmFolder::Analyze(name);
        EXPECT_EQ(analysis.Run.Status, succeeds ? 0 : 255);
        EXPECT_THAT(analysis.Run.Output,
                    MatchesRegex(succeeds ? "Total time: [0-9]+ ms\nResult: 0\n" : "(.|\n)*Total time: [0-9]+ ms\nResult: -1\n"));
        EXPECT_EQ(analysis.Run.Error, "");
        EXPECT_EQ(analysis.HasResult, succeeds);
        return analysis;
    }

    static void ExpectFilm(const std::string& name, const std::string& properties, const std::string& logged = "")
    {
        SCOPED_TRACE(name);
        const FilmAnalysis analysis = Analyze(name, true);
        const std::set<std::string> expected = GetLines(properties);
        EXPECT_EQ(WithStars(analysis.Properties, expected), expected) << analysis.Log;
        EXPECT_THAT(analysis.Log, HasSubstr(logged));
    }

    FilmFolder m_folder;
};

TEST_F(AnalyzeExtended, TellsWhatAFilmWasMadeOf)
{
    FilmFolder::Write("text.srt", "1\n00:00:00,000 --> 00:00:01,000\nOne\n");

    const std::string sounds = "Audio Streams=2\nAudio Codec=AC-3;AC-3;\nAudio Channels=2;6;\nAudio Bitrate=192;384;\n"
                               "Audio Sample Rate=48000;48000;\n";
    const std::string untitled = sounds + "Audio Title=;;\nAudio Language=German;;\n";
    const std::string x265 = "-c:v libx265 -preset ultrafast -pix_fmt yuv420p10le ";
    const std::string wide =
        FilmPicture + x265 + "-x265-params log-level=none:level-idc=5.1:colorprim=bt2020:colormatrix=bt2020nc:transfer=";
    const std::string display = "hdr10=1:max-cll=800,400:'master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)"
                                "L(10000000,1)' ";
    const std::string light = "HDR Mastering Luminance=1000\nHDR Mastering Color Space=Display P3\nHDR Peak Luminance=800\n"
                              "HDR Average Luminance=400\n";
    const std::string layers = FilmPicture + "-map 1 -map 0 " + x265 +
                               "-filter:v:1 setsar=2 -x265-params:v:0 log-level=none:level-idc=5.1 "
                               "-x265-params:v:1 log-level=none:" +
                               display;
    const std::string layered = Picture {.Codec = HEVC, .Depth = "10"};
    const std::string copy = "-map 0 -c copy ";
    // Made in this order: a film may be made of those above it.
    // clang-format off
    const std::array<std::string, 3> rows[] = {
        {"h264.mkv",
         FilmPicture + FilmSound + FilmSound + "-map 0 -map 1 -map 2 " + FilmH264 +
             "-c:a ac3 -ac:a:0 2 -b:a:0 192k -ac:a:1 6 -b:a:1 384k -metadata:s:a:0 language=ger -metadata:s:a:1 language=en "
             "-metadata:s:a:0 'title=Für alle' ",
         Picture() + sounds + "Audio Title=Für alle;;\nAudio Language=German;English;\n"},
        {"h264.mp4", "-i h264.mkv " + copy, Picture {.Bitrate = "*"} + untitled},
        {"h264.avi", "-i h264.mkv " + copy + FilmH264 + "-b:v 300k ",
         Picture {.Bitrate = "*"} + sounds + "Audio Title=Für alle;;\nAudio Language=;;\n"},
        {"h264.ts", "-i h264.mkv " + copy, Picture() + untitled},
        {"h264.flv", FilmPicture + FilmSound + FilmH264 + "-b:v 300k -c:a aac -ac 2 -b:a 128k ",
         Picture {.Bitrate = "300"} + Sound("AAC LC", "2", "128")},
        {"hdr10.mkv", wide + "smpte2084:" + display,
         Picture {.Codec = HEVC, .Depth = "10", .Space = "BT.2020"} + "HDR Format=HDR10\n" + light},
        {"hlg.mkv", wide + "arib-std-b67 ",
         Picture {.Codec = HEVC, .Depth = "10", .Space = "BT.2020"} + "HDR Format=HLG\n"},
        {"interlaced.ts",
         "-f lavfi -i testsrc2=s=720x576:r=25:d=3 -c:v mpeg2video -pix_fmt yuv420p -flags +ildct+ilme "
         "-vf setfield=tff,setparams=color_primaries=bt470bg -aspect 16:9 -color_primaries bt470bg ",
         Picture {.Codec = "MPEG-2 Main", .Space = "BT.601 (PAL)", .Scan = "Interlaced"}},
        {"vp9.webm", FilmPicture + "-c:v libvpx-vp9 -deadline realtime -cpu-used 8 ", Picture {.Codec = "VP9 Profile 0"}},
        {"av1.mkv", FilmPicture + "-pix_fmt yuv420p10le -c:v libaom-av1 -cpu-used 8 -usage realtime ",
         Picture {.Codec = "AV1 Main", .Depth = "10"}},
        {"prores.mov", FilmPicture + FilmSound + "-c:v prores_ks -profile:v 3 -c:a pcm_s16le -ac 2 ",
         Picture {.Codec = "ProRes HQ", .Bitrate = "*", .Depth = "10"} + Sound("PCM_S16LE", "2", "1536")},
        {"wmv2.wmv", FilmPicture + FilmSound + "-c:v wmv2 -c:a wmav2 -b:a 128k ",
         Picture {.Codec = "WMV2"} + Sound("WMAV2", "1", "128")},
        {"theora.ogv", FilmPicture + "-c:v libtheora ", Picture {.Codec = "Theora"}},

        // 320 by 180 with pixels of 4:3 is 64:27.
        {"anamorphic.mkv", FilmPicture + "-vf setsar=4/3 " + FilmH264, Picture {.Aspect = "2.37"}},
        // Where the container says otherwise than the frames, its kind decides; and that is told by an extension in lower case.
        {"square.mkv", "-i anamorphic.mkv -c copy -aspect 16:9 ", Picture()},
        {"square.MKV", "-i square.mkv -c copy -f matroska ", Picture {.Aspect = "2.37"}},

        {"sounds.mkv",
         FilmSound + "-map 0 -map 0 -map 0 -map 0 -map 0 -map 0 -strict -2 -c:a:0 dca -c:a:1 truehd -c:a:2 eac3 -c:a:3 libopus "
                     "-c:a:4 flac -c:a:5 aac -b:a:2 224k -ac:a:0 6 -ac:a:1 2 ",
         "Audio Streams=6\nAudio Codec=DTS;TrueHD;E-AC3;Opus;FLAC;AAC LC;\nAudio Channels=6;2;1;1;1;1;\n"
         "Audio Sample Rate=48000;48000;48000;48000;48000;48000;\nAudio Bitrate=1411;;224;;;;\nAudio Title=;;;;;;\n"
         "Audio Language=;;;;;;\n"},
        {"subtitles.mkv",
         "-i h264.mkv -i text.srt -map 0:0 -map 1 -map 1 -map 1 -c:v copy -c:s:0 srt -c:s:1 ass -c:s:2 webvtt "
         "-metadata:s:s:0 language=fre -metadata:s:s:1 language=pt -metadata:s:s:1 'title=Notes' -metadata:s:s:2 language=und ",
         Picture() + "Subtitle Streams=3\nSubtitle Codec=SRT;ASS;WebVTT;\nSubtitle Title=;Notes;;\n"
                     "Subtitle Language=French;Portuguese;;\n"},

        // What else is a picture does not take the film's place.
        {"cover.jpg", "-f lavfi -i testsrc2=s=1280x960 -frames:v 1 ",
         Picture {.Codec = "MJPEG Baseline", .Aspect = "1.33"}},
        {"cover.mkv", "-i h264.mkv -map 0:0 -c copy -attach cover.jpg -metadata:s:t mimetype=image/jpeg ", Picture()},
        {"cover.mp4", "-i h264.mkv -i cover.jpg -map 1 -map 0:0 -c copy -disposition:v:0 attached_pic ",
         Picture {.Bitrate = "*"}},
        {"cover.mp3",
         FilmSound + "-i cover.jpg -map 0 -map 1 -c:a libmp3lame -b:a 96k -c:v copy -disposition:v:0 attached_pic ",
         Sound("MP3", "1", "96")},
        // Of two as large the first is the film.
        {"twice.mkv", FilmPicture + "-i h264.mkv -map 0 -map 1:0 -c:v:0 mpeg4 -c:v:1 copy ",
         Picture {.Codec = "MPEG4 Simple Profile"}},
        // A second layer is as large as the film or half as large. What its frames say of the light counts, and nothing else.
        {"layers.mkv", "-f lavfi -i testsrc2=s=160x90:r=25:d=3 " + layers, layered + light},
        {"layers.ts", "-i layers.mkv -map 0 -c copy ", layered + light},
        {"narrow.mkv", "-f lavfi -i testsrc2=s=158x90:r=25:d=3 " + layers, layered},
        {"flat.mkv", "-f lavfi -i testsrc2=s=160x88:r=25:d=3 " + layers, layered},
    };
    // clang-format on
    for (const auto& [name, arguments, expected] : rows)
    {
        FilmFolder::Make(arguments + name);
        ExpectFilm(name, expected);
    }
}

// More sizes than frames share memory for.
TEST_F(AnalyzeExtended, FollowsAFilmThatChangesItsSize)
{
    std::string film;
    for (const char* size : {"320x180", "352x198", "384x216", "416x234", "448x252", "480x270", "320x180"})
    {
        FilmFolder::Make(std::string("-f lavfi -i testsrc2=r=25:d=0.08:s=") + size + " -preset veryfast part.hevc");
        film += FilmFolder::Read("part.hevc");
    }
    FilmFolder::Write("film.hevc", film);
    const FilmAnalysis analysis = Analyze("film.hevc", true);
    EXPECT_THAT(analysis.Properties, testing::IsSupersetOf({"Video Scan=Progressive", "Aspect Ratio=1.78"}));
    EXPECT_THAT(analysis.Log, testing::Not(HasSubstr("No frame came")));
}

// No encoder at hand makes Dolby Vision, so its record takes the place of another box of the same size.
TEST_F(AnalyzeExtended, TellsTheDolbyVisionProfileOfTheContainer)
{
    FilmFolder::Make(FilmPicture + "-c:v libx265 -preset ultrafast -pix_fmt yuv420p10le "
                                   "-x265-params log-level=none:level-idc=5.1 plain.mkv");
    FilmFolder::RunProgram("mkvmerge --max-luminance 0:1000 --min-luminance 0:0.0001 --chromaticity-coordinates "
                           "0:0.708,0.292,0.170,0.797,0.131,0.046 --white-colour-coordinates 0:0.3127,0.329 plain.mkv -o m.mkv");
    ExpectFilm("m.mkv", Picture {.Codec = HEVC, .Bitrate = "*", .Depth = "10"} +
                            "HDR Mastering Luminance=1000\nHDR Mastering Color Space=BT.2020\n");
    FilmFolder::Make("-i m.mkv -c copy m.mp4");
    const std::string film = FilmFolder::Read("m.mp4");
    const size_t box = film.find("mdcv");
    ASSERT_NE(box, std::string::npos);
    // Version, profile of 7 bits, level of 6, flags for metadata and base layer; compatibility of 4 bits.
    const auto expectRecord = [&](const std::string& record, const char* space, const std::string& format)
    {
        std::string changed = film;
        FilmFolder::Write("dovi.mp4", changed.replace(box, 28, record + std::string(28 - record.size(), '\0')));
        ExpectFilm("dovi.mp4", Picture {.Codec = HEVC, .Bitrate = "*", .Depth = "10", .Space = space} + "HDR Format=" + format);
    };
    expectRecord({"dvvC\1\0\x10\x35\x10", 9}, "", "DolbyVision Profile 8.1, HDR10-compatible");
    expectRecord({"dvcC\1\0\x0a\x35\0", 9}, "BT.2020", "DolbyVision Profile 5 (ICtCp)");
}

TEST_F(AnalyzeExtended, TellsWhatIsLeftOfADamagedFilm)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "whole.mkv");
    FilmFolder::Make("-f lavfi -i testsrc2=s=64x64:r=25:d=60 -c:v mpeg4 long.mkv");
    std::string film = FilmFolder::Read("whole.mkv");
    FilmFolder::Write("cut.mkv", film.substr(0, film.size() / 2));
    FilmFolder::Write("unknown.mkv", film.replace(film.find("V_MPEG4/ISO/AVC"), 15, "V_MPEG4/ISO/XVC"));
    // Every byte of the pictures is noise, as in a scrambled recording.
    FilmFolder::Make("-i whole.mkv -c copy -bsf:v noise=1 noise.mkv");
    FilmFolder::Make("-i long.mkv -c copy -bsf:v noise=1 longnoise.mkv");
    const std::string unknown = "\nVideo Bitrate=0\nColor Space=\n";
    ExpectFilm("cut.mkv", Picture());
    ExpectFilm("unknown.mkv", "Video Codec=Unknown" + unknown, "There is no decoder for it: unknown.mkv");
    ExpectFilm("noise.mkv", "Video Codec=H264" + unknown + "Aspect Ratio=1.78\n", "No frame came out of 75 packets");
    ExpectFilm("longnoise.mkv", "Video Codec=MPEG4 Simple Profile" + unknown + "Aspect Ratio=1\n",
               "No frame came out of 1000 packets");
}

TEST_F(AnalyzeExtended, RefusesWhatIsNoFilm)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mp4");
    const std::string film = FilmFolder::Read("film.mp4");
    FilmFolder::Write("cut.mp4", film.substr(0, film.size() / 2));
    FilmFolder::Write("text.txt", "No film, but a text.\n");
    FilmFolder::Write("empty.mkv", "");
    for (const char* extension : {"iso", "ifo"})
        fs::copy_file("film.mp4", std::string("film.") + extension);
    fs::create_directory("folder.mkv");
    ASSERT_EQ(mkfifo("pipe.mkv", 0600), 0);
    fs::create_symlink("pipe.mkv", "link.mkv");

    const auto expectReason = [](const std::string& reason, std::initializer_list<const char*> names)
    {
        for (const char* name : names)
            EXPECT_THAT(Analyze(name, false).Log, HasSubstr("\t" + reason)) << name;
    };
    expectReason("The file does not open (Invalid data found when processing input): ", {"cut.mp4", "text.txt", "empty.mkv"});
    expectReason("This is no file: ", {"folder.mkv", "link.mkv", "/dev/zero"});
    expectReason("Disc images and DVD folders are not analyzed here: film.", {"film.iso", "film.ifo"});
    // No name starts a protocol of the libraries but an address.
    expectReason("The file does not open (No such file or directory): ",
                 {"missing/film.mkv", "concat:film.mp4|film.mp4", "data:video/mp4;base64,AAAA", "pipe:0", "http:film.mp4"});
    expectReason("The file does not open (", {"http://127.0.0.1:1/film.mp4", "http://host.invalid/a.mp4"});
}

TEST_F(AnalyzeExtended, TakesAFilmByAnyNameInAnyLocaleAndFailsWithoutAPlaceForTheResult)
{
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    fs::create_symlink("film.mkv", "link.mkv");
    // Without an extension that tells of Matroska the frames' aspect counts, which is the same here.
    for (const char* name :
         {"\xff.mkv", "-film.mkv", "http:film.mkv", "concat:film.mkv|film.mkv", "file:film.mkv", "film%d.mkv", "a b's (1).mkv",
          "f\xc3\xbcr\xe6\x97\xa5.mkv", "film.ISO", "film", "film.bdmv.mkv", "-", "%s%n", "link.mkv"})
    {
        if (!fs::exists(name))
            fs::copy_file("film.mkv", name);
        ExpectFilm(name, Picture());
    }
    const WorkerRun run = RunWorker({"/AnalyzeVideoExtended", "film.mkv", "film.mkv/result.xml"});
    EXPECT_EQ(run.Status, 255);
    EXPECT_THAT(run.Output, testing::EndsWith("\nResult: -1\n"));
    if (system("locale -a | grep -qi '^de_DE.utf'") != 0)
        GTEST_SKIP() << "there is no German locale";
    EXPECT_THAT(FilmFolder::Analyze("film.mkv", {"LC_ALL=de_DE.UTF-8"}).Properties, testing::Contains("Aspect Ratio=1,78"));
    EXPECT_THAT(FilmFolder::FindBlackBars("film.mkv", {"LC_ALL=de_DE.UTF-8"}).Properties, testing::Contains("Aspect Ratio=1,78"));
}

TEST_F(AnalyzeExtended, FailsWithoutTheCodecComponent)
{
    if (void* const library = dlopen("libavutil.so.59", RTLD_LAZY); library != nullptr)
    {
        dlclose(library);
        GTEST_SKIP() << "the system has libraries that take the component's place";
    }
    const std::string tools = fs::path(GetWorkerProgram()).replace_filename("libZVTools.so");
    const LoneWorker worker(tools);
    FilmFolder::Make(FilmPicture + FilmH264 + "film.mkv");
    const std::string log = Analyze("film.mkv", false).Log;
    EXPECT_THAT(log, HasSubstr("CZVAVLibraries\tThe codec component is not in "));
    EXPECT_THAT(log, HasSubstr("CZVAVLibraries\tThe codec libraries cannot be used: av_log_set_callback is missing"));
}
}
