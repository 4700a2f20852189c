#include "video/basic/CZVVideoAnalyzeHelper.h"

#include "support/PropertyLines.h"
#include "video/StandIns.h"
#include "video/WithTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using Lines = std::set<std::string>;

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

    Lines Analyze(const std::string& name, const StandInFilm& film) const
    {
        m_folder.Write(name, NoFilm);
        StandIns::Show(film);
        CZVVideoAnalyzeHelper analysis;
        EXPECT_TRUE(analysis.AnalyzeFile(ZVFilename(TextAt(name))));
        return GetLines(analysis);
    }

    // What the tags and chapters of a film add to its result.
    Lines AnalyzeTags(const std::string& name, const StandInFilm& film) const
    {
        StandInFilm bare = film;
        bare.Tags.clear();
        bare.Chapters.clear();
        const Lines all = Analyze(name, film);
        const Lines facts = Analyze(name, bare);
        Lines added;
        std::ranges::set_difference(all, facts, std::inserter(added, added.end()));
        return added;
    }
};

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
}
