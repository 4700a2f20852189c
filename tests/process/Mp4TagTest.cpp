// The tags that the program for developers sets in a film, as other programs read them.

#include "RunWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::HasSubstr;
using testing::Not;

// What a command of the shell came to.
struct Outcome
{
    int Status = -1;
    std::string Output;
    std::string Errors;
};

Outcome RunShell(const std::string& command)
{
    const int status = system((command + " </dev/null >output 2>errors").c_str());
    return {WEXITSTATUS(status), WorkFolder::Read("output"), WorkFolder::Read("errors")};
}

Outcome Tag(const std::string& arguments)
{
    return RunShell((std::filesystem::path(GetWorkerProgram()).parent_path() / "zvmp4tag").string() + " " + arguments);
}

// Two seconds at most, in which the frames of picture and sound end together.
void MakeFilm(const std::string& name, const std::string& picture = "testsrc")
{
    const Outcome made = RunShell("ffmpeg -v error -y -f lavfi -i " + picture +
                                  "=size=160x90:rate=25 -f lavfi -i sine=sample_rate=48000 -t 1.6 "
                                  "-c:v libx264 -bf 0 -pix_fmt yuv420p -c:a ac3 -use_editlist 0 -metadata comment=before " +
                                  name);
    ASSERT_EQ(made.Status, 0) << made.Errors;
}

// A program that reads tags, and its command. It is missing where the first command fails.
struct Reader
{
    const char* Check;
    const char* Command;
};

enum Readers
{
    FFprobe,
    ExifTool,
    AtomicParsley,
    Mutagen,
};

constexpr Reader Programs[] = {
    {"ffprobe -version",                     "ffprobe -v error -of default=nw=1 -show_entries format_tags film.mp4"},
    {"exiftool -ver",                        "exiftool -s2 film.mp4"                                               },
    {"AtomicParsley --version",              "AtomicParsley film.mp4 -t"                                           },
    {"/usr/bin/python3 -c 'import mutagen'",
     "PYTHONIOENCODING=utf-8 /usr/bin/python3 -c 'import mutagen.mp4\n"
     "for name, value in mutagen.mp4.MP4(\"film.mp4\").tags.items(): print(name, value)'"                          },
};

// A tag as it is set, and the lines in which the programs above tell it.
struct Fact
{
    const char* Name;
    const char* Value;
    const char* Lines[std::size(Programs)];
};

// clang-format off
constexpr Fact Facts[] = {
    {"Name", "Gr\u00fc\u00dfe \u65e5\u672c",
     {"TAG:title=Gr\u00fc\u00dfe \u65e5\u672c", "Title: Gr\u00fc\u00dfe \u65e5\u672c",
      "Atom \"\u00a9nam\" contains: Gr\u00fc\u00dfe \u65e5\u672c", "\u00a9nam ['Gr\u00fc\u00dfe \u65e5\u672c']"}},
    {"Artist", "One=Two",
     {"TAG:artist=One=Two", "Artist: One=Two", "Atom \"\u00a9ART\" contains: One=Two", "\u00a9ART ['One=Two']"}},
    {"Album Artist", "All", {"TAG:album_artist=All", "AlbumArtist: All", "Atom \"aART\" contains: All", "aART ['All']"}},
    {"Track #", "3/12", {"TAG:track=3/12", "TrackNumber: 3 of 12", "Atom \"trkn\" contains: 3 of 12", "trkn [(3, 12)]"}},
    {"Disc #", "1/2", {"TAG:disc=1/2", "DiskNumber: 1 of 2", "Atom \"disk\" contains: 1 of 2", "disk [(1, 2)]"}},
    {"Genre", "Ska", {"TAG:genre=Ska", "Genre: Ska", "Atom \"gnre\" contains: Ska", "\u00a9gen ['Ska']"}},
    {"Compilation", "1", {"TAG:compilation=1", "Compilation: Yes", "Atom \"cpil\" contains: true", "cpil True"}},
    {"BPM", "120", {"", "BeatsPerMinute: 120", "Atom \"tmpo\" contains: 120", "tmpo [120]"}},
    {"Date", "2021-05-04",
     {"TAG:date=2021-05-04", "ContentCreateDate: 2021:05:04", "Atom \"\u00a9day\" contains: 2021-05-04", "\u00a9day ['2021-05-04']"}},
    {"stik", "9", {"TAG:media_type=9", "MediaType: Movie", "Atom \"stik\" contains: Movie", "stik [9]"}},
    {"Season", "2", {"TAG:episode_sort=2", "TVEpisode: 2", "Atom \"tves\" contains: 2", "tves [2]"}},
    {"Rating", "4",
     {"TAG:RATING=8", "Rating: 8", "Atom \"----\" [com.apple.iTunes;RATING] contains: 8", "----:com.apple.iTunes:RATING [MP4FreeForm(b'8'"}},
    {"My own", "of mine",
     {"TAG:My own=of mine", "Myown: of mine", "Atom \"----\" [com.apple.iTunes;My own] contains: of mine",
      "----:com.apple.iTunes:My own [MP4FreeForm(b'of mine'"}},
    {"Image File", "cover.png",
     {"", "CoverArt: (Binary data ", "Atom \"covr\" contains: 1 piece of artwork", "covr [MP4Cover(b'\\x89PNG"}},
};
// clang-format on

class Mp4TagReaders : public testing::TestWithParam<Readers>
{
};

TEST_P(Mp4TagReaders, AgreeWithWhatWasSet)
{
    const Reader& program = Programs[GetParam()];
    const WorkFolder folder;
    if (RunShell(program.Check).Status != 0)
        GTEST_SKIP() << program.Check << " does not run";
    MakeFilm("film.mp4");
    ASSERT_EQ(RunShell("ffmpeg -v error -f lavfi -i color=red:size=64x64 -frames:v 1 cover.png").Status, 0);
    std::string changes;
    for (const Fact& fact : Facts)
        changes += std::string(" --set '") + fact.Name + "=" + fact.Value + "'";
    ASSERT_EQ(Tag("film.mp4 --remove Comment" + changes).Errors, "");
    const Outcome told = RunShell(program.Command);
    EXPECT_EQ(told.Status, 0) << told.Errors;
    for (const Fact& fact : Facts)
        EXPECT_THAT(told.Output, HasSubstr(fact.Lines[GetParam()])) << fact.Name;
    EXPECT_THAT(told.Output, Not(HasSubstr("before")));
}

INSTANTIATE_TEST_SUITE_P(Programs, Mp4TagReaders, testing::Values(FFprobe, ExifTool, AtomicParsley, Mutagen));

TEST(Mp4Tag, ListsChangesAndRemoves)
{
    const WorkFolder folder;
    MakeFilm("film.mp4");
    ASSERT_EQ(Tag("film.mp4 --remove 'Tool Name' --set 'Lyrics=a\nb' --set Name=x --remove COMMENT --set Name=y").Errors, "");
    EXPECT_THAT(Tag("film.mp4").Output, testing::MatchesRegex("Lyrics=a\n\tb\nName=y\nTool Name=Lavf[0-9.]+\n"));
}

TEST(Mp4Tag, PutsAFilmBehindAnother)
{
    const WorkFolder folder;
    MakeFilm("film.mp4");
    MakeFilm("second.mp4", "testsrc2");
    ASSERT_EQ(Tag("film.mp4 --append second.mp4 --append second.mp4 --set Name=Both").Errors, "");
    EXPECT_EQ(
        RunShell("ffprobe -v error -count_frames -select_streams v -of csv=p=0 -show_entries stream=nb_read_frames film.mp4")
            .Output,
        "120\n");
    EXPECT_THAT(Tag("film.mp4").Output, HasSubstr("Name=Both\n"));
}

struct RefusedUse
{
    const char* Arguments;
    int Status;
    const char* Message;
};

constexpr RefusedUse RefusedUses[] = {
    {"",                                        2, "usage: zvmp4tag FILE"                              },
    {"film.mp4 second.mp4",                     2, "usage: zvmp4tag FILE"                              },
    {"film.mp4 --unknown",                      2, "usage: zvmp4tag FILE"                              },
    {"film.mp4 --set",                          2, "usage: zvmp4tag FILE"                              },
    {"missing.mp4",                             1, "missing.mp4: "                                     },
    {"film.mp4 --set Name=x --set Name",        1, "Name: there is no = between the name and the value"},
    {"film.mp4 --set Name=x --set =y",          1, "=y: a tag without a name cannot be set"            },
    {"film.mp4 --set Name=x --set BPM=fast",    1, "BPM=fast: \"fast\" is no whole number"             },
    {"film.mp4 --set Name=x --append errors",   1, "errors: "                                          },
    {"film.mp4 --set Name=x --append film.mkv", 1, "film.mkv: Missing FTYP Atom"                       },
};

// The films of a library are worth more than a change of a tag.
TEST(Mp4Tag, LeavesTheFilmAloneWhenAnythingIsWrong)
{
    const WorkFolder folder;
    MakeFilm("film.mp4");
    MakeFilm("film.mkv");
    const std::string before = WorkFolder::Read("film.mp4");
    for (const RefusedUse& use : RefusedUses)
    {
        SCOPED_TRACE(use.Arguments);
        const Outcome refused = Tag(use.Arguments);
        EXPECT_EQ(refused.Status, use.Status);
        EXPECT_THAT(refused.Errors, HasSubstr(use.Message));
        EXPECT_TRUE(WorkFolder::Read("film.mp4") == before);
    }
}
}
