#include "video/basic/CZVVideoAnalyzeHelper.h"

#include "mp4/AtomBytes.h"
#include "support/PropertyLines.h"
#include "video/StandIns.h"
#include "video/WithTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace AtomBytes;
using testing::IsEmpty;
using testing::IsSupersetOf;
using Lines = std::set<std::string>;

Lines operator+(Lines left, const Lines& right)
{
    left.insert(right.begin(), right.end());
    return left;
}

using Tags = std::map<std::string, const wchar_t*>;

StandInFilm SoundWith(const Tags& tags)
{
    return {.VideoStream = -1, .AudioStream = 0, .Tags = tags};
}

StandInFilm FilmWith(const Tags& tags)
{
    return {.Tags = tags};
}

// The bytes are no film, so that there is nothing of the extended analysis in a result.
class CZVVideoAnalyzeHelperTest : public WithTools
{
protected:
    static constexpr char NoFilm[] = "A poem.";

    Lines Analyze(const std::string& name, const StandInFilm& film, const Bytes& content = NoFilm) const
    {
        m_folder.Write(name, content);
        StandIns::Show(film);
        CZVVideoAnalyzeHelper analysis;
        EXPECT_TRUE(analysis.AnalyzeFile(ZVFilename(TextAt(name))));
        return GetLines(analysis);
    }

    // What the tags and chapters of a film add to its result.
    Lines AnalyzeTags(const std::string& name, const StandInFilm& film, const Bytes& content = NoFilm) const
    {
        StandInFilm bare = film;
        bare.Tags.clear();
        bare.Chapters.clear();
        const Lines all = Analyze(name, film, content);
        const Lines facts = Analyze(name, bare, content);
        Lines added;
        std::ranges::set_difference(all, facts, std::inserter(added, added.end()));
        return added;
    }
};

TEST_F(CZVVideoAnalyzeHelperTest, WritesTheFactsOfTheStreams)
{
    const Lines picture = {"Media Type=Video", "FPS=12.5", "Width=1920", "Height=1080"};
    const Lines sound = {"Sample Rate=48000", "Channels=6", "Bit Depth=24"};
    const Lines audio = {"Media Type=Audio"};
    struct Row
    {
        const char* Name;
        int32_t VideoStream;
        int32_t AudioStream;
        const wchar_t* VideoCodec;
        const wchar_t* AudioCodec;
        Lines Streams;
        std::string Compression;
    };
    const Row rows[] = {
        {"a.mkv", 0,  3,  L"H264", L"AC-3", picture + sound, "mkv video (video: H264, audio: AC-3)"                  },
        {"a.MP4", 1,  0,  L"H264", L"AAC",  picture + sound, "MP4 video (video: H264, audio: AAC)"                   },
        {"a.avi", 0,  1,  L"",     L"",     picture + sound, "avi video (video: unknown codec, audio: unknown codec)"},
        {"a.avi", 0,  -1, L"",     L"AC-3", picture,         "avi video (video: unknown codec)"                      },
        {"a.mp3", -1, 0,  L"H264", L"MP3",  audio + sound,   "MP3"                                                   },
        {"a.mp3", -1, 0,  L"H264", L"",     audio + sound,   ""                                                      },
        {"a.mkv", -1, -1, L"H264", L"AC-3", audio,           ""                                                      },
    };
    for (const Row& row : rows)
    {
        StandInFilm film = {.Duration = 2999, .VideoStream = row.VideoStream, .AudioStream = row.AudioStream};
        film.VideoCodec = row.VideoCodec;
        film.AudioCodec = row.AudioCodec;
        film.Video.Width = 1920;
        film.Video.Height = 1080;
        film.Video.Fps = 12.5;
        film.Audio.SampleRate = 48'000;
        film.Audio.Channels = 6;
        film.Audio.BitDepth = 24;
        const Lines file = {std::string("File Type=") + (row.Name + 2), "File Size=3000", "Duration=2", "Bitrate=8",
                            "Compression=" + row.Compression};
        EXPECT_EQ(Analyze(row.Name, film, Bytes(3000, 'x')), file + row.Streams) << row.Name << " " << row.Compression;
    }
}

TEST_F(CZVVideoAnalyzeHelperTest, KeepsTheBitrateInItsNumber)
{
    struct Row
    {
        uintmax_t Bytes;
        int64_t Milliseconds;
        std::string Bitrate;
    };
    const Row rows[] = {
        {125'000,       999,       "1001"      },
        {300'000'000,   1,         "2147483647"},
        {1'000'000'000, INT64_MAX, "0"         },
    };
    for (const Row& row : rows)
    {
        m_folder.Write("film.mkv", "");
        std::filesystem::resize_file(m_folder.PathOf("film.mkv"), row.Bytes);
        StandIns::Show({.Duration = row.Milliseconds});
        CZVVideoAnalyzeHelper analysis;
        ASSERT_TRUE(analysis.AnalyzeFile(ZVFilename(TextAt("film.mkv"))));
        EXPECT_THAT(GetLines(analysis), testing::Contains("Bitrate=" + row.Bitrate));
    }
}

TEST_F(CZVVideoAnalyzeHelperTest, FailsOnlyWithoutThePlayer)
{
    m_folder.Write("film.mkv", NoFilm);
    for (const StandInFilm& film : {StandInFilm {.HasPlayer = false}, StandInFilm {.Opens = false}})
    {
        StandIns::Show(film);
        EXPECT_FALSE(CZVVideoAnalyzeHelper().AnalyzeFile(ZVFilename(TextAt("film.mkv")))) << film.HasPlayer;
    }
    // The player gets the name with its properties.
    ZVFilename name(TextAt("film.mkv"));
    name.SetProperty(ZVFilename::FileTypeProperty, L"avi");
    StandIns::Show({.VideoCodec = L"DivX"});
    CZVVideoAnalyzeHelper analysis;
    EXPECT_TRUE(analysis.AnalyzeFile(name));
    EXPECT_THAT(GetLines(analysis), IsSupersetOf({"File Type=avi", "Compression=avi video (video: DivX)"}));
    EXPECT_THAT(StandIns::GetCalls().front(), testing::HasSubstr("XMLFN"));
}

TEST_F(CZVVideoAnalyzeHelperTest, MapsTagsInTheirOrder)
{
    struct Row
    {
        const char* Name;
        StandInFilm Film;
        Lines Expected;
    };
    // clang-format off
    const Row rows[] = {
        {"the title of a sound",       SoundWith({{"title", L"T"}}),                                         {"Name=T"}},
        {"the title of a film",        FilmWith({{"title", L"T"}, {"comment", L"C"}}),                       {"Description=C"}},
        {"a description comes first",  FilmWith({{"description", L"D"}, {"comment", L"C"}}),                 {"Description=D"}},
        {"an artist comes first",      FilmWith({{"author", L"B"}, {"artist", L"A"}}),                       {"Artist=A"}},
        {"an empty tag is none",       FilmWith({{"artist", L""}, {"author", L"B"}}),                        {"Artist=B"}},
        {"music",                      FilmWith({{"album_artist", L"AA"}, {"album", L"AL"}, {"track", L"3/9"}, {"disc", L"1"}}),
         {"Album Artist=AA", "Album=AL", "Track #=3/9", "Disc #=1"}},
        {"others",                     FilmWith({{"genre", L"G"}, {"copyright", L"C"}, {"rating", L"5"}, {"language", L"ger"}}),
         {"Genre=G", "Copyright=C", "Rating=5", "Language=ger"}},
        {"a service",                  FilmWith({{"service_provider", L"P"}, {"service_name", L"N"}}),       {"Service Provider=P", "Service Name=N"}},
        {"a day",                      FilmWith({{"date", L"2024-05-06"}}),                                  {"Date=45418"}},
        {"a day with a time and zone", FilmWith({{"date", L"2024-05-06T20:00:00+02:00"}}),                   {"Date=45418.75"}},
        {"no day",                     FilmWith({{"date", L"soon"}}),                                        {}},
        {"a moment",                   FilmWith({{"creation_time", L"2024-05-06T07:08:09.000000Z"}}),        {"Date Created=1714979289"}},
        {"no place but in MP4",        FilmWith({{"location", L"+48.8577+002.295/"}}),                       {}},
        {"no television in Matroska",  FilmWith({{"WM/SubTitle", L"S"}, {"WM/MediaIsMovie", L"1"}}),         {}},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(AnalyzeTags("film.mkv", row.Film), row.Expected) << row.Name;
    StandInFilm parted;
    parted.Chapters = {
        {L"One|Two", 0        },
        {L"",        90'000   },
        {L"Drei",    7'200'000}
    };
    const Lines chapters = {"$!@_Chapters=3", "$!@_ChapterNames=One|Two||Drei", "$!@_ChapterTimes=0|90000|7200000"};
    EXPECT_EQ(AnalyzeTags("film.mkv", parted), chapters);
}

TEST_F(CZVVideoAnalyzeHelperTest, KeepsWhatAnMp4FileSays)
{
    const auto tag = [](const char* name, const Bytes& text)
    { return Atom("\xa9" + Bytes(name), Atom("data", Number(1, 4) + Zeros(4) + text)); };
    const Bytes handler = FullAtom("hdlr", Zeros(4) + "mdir" + Zeros(12));
    const Bytes ilst = Atom("ilst", tag("nam", "Its name") + tag("gen", "") + tag("day", "2023-01-02"));
    const Bytes movie = Atom("moov", FullAtom("mvhd", Zeros(8) + Number(1000, 4) + Number(10'000, 4) + Zeros(80)) +
                                         Atom("udta", FullAtom("meta", handler + ilst)));
    const Bytes file = Atom("ftyp", "isom" + Zeros(4)) + movie;
    const Lines found = {"Name=Its name", "Date=44928"};
    const Tags tags = {
        {"title",    L"T"                       },
        {"genre",    L"G"                       },
        {"date",     L"2024-05-06"              },
        {"location", L"at +48.8577-002.295+035/"}
    };
    const Lines place = {"Latitude=+48.8577", "Longitude=-002.295", "Altitude=+035"};

    const Lines result = Analyze("sound.m4a", SoundWith(tags), file);
    EXPECT_THAT(result, IsSupersetOf(found));
    EXPECT_THAT(result, IsSupersetOf(place));
    EXPECT_TRUE(result.contains("Genre=G")) << "an empty value is none";
    EXPECT_THAT(Analyze("film.mov", SoundWith(tags), movie), IsSupersetOf(found)) << "QuickTime";
    // Whatever is wrong with the file, the player's tags are there.
    for (const Bytes& damaged : {movie, file.substr(0, file.size() - 30), Atom("ftyp"), Bytes()})
    {
        const Lines rest = Analyze("film.m4a", SoundWith(tags), damaged);
        EXPECT_THAT(rest, IsSupersetOf({"Name=T", "Genre=G", "Date=45418"})) << damaged.size();
        EXPECT_THAT(rest, IsSupersetOf(place)) << damaged.size();
    }
    EXPECT_THAT(Analyze("film.mp4", FilmWith({
                                        {"location", L"+1-2"}
    })),
                IsSupersetOf({"Latitude=+1", "Longitude=-2", "Altitude="}));
    EXPECT_THAT(AnalyzeTags("film.mp4", FilmWith({
                                            {"location", L"Paris"}
    })),
                IsEmpty());
}
}
