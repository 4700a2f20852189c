#include "caller/list/CFilmRows.h"
#include "process/WorkFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace
{
using nlohmann::json;

struct Row
{
    const char* Path;
    const char* Values;  // JSON
    const char* Error;   // of the basic task; empty if it did not fail
};

// clang-format off
constexpr Row Rows[] = {
    {"/films/a.mkv", R"({"Width": 3840, "Height": 2160, "File Size": 5000000000, "Duration": 5400.5, "Video Codec": "HEVC Main 10",
        "HDR Format": "DolbyVision Profile 8", "Audio Language": ["English", "German"], "Video Scan": "Progressive",
        "Name": "100% Wolf_man"})", ""},
    {"/films/b.mkv", R"({"Width": 1920, "Height": 800, "File Size": 700000000, "Duration": 90, "Video Codec": "H264 High",
        "Audio Language": ["Old English", null], "Video Scan": "Interlaced", "Name": "it's \"B\""})", ""},
    {"/films/c\xff.mp3", R"({"Media Type": "Audio", "File Size": 900})", ""},
    {"/films/d.mkv", "{}", "no film"},
    {"/films/gone.mkv", R"({"Width": 3840})", ""},
};
// clang-format on

// A catalog of these films, of which the last has vanished.
class FilmRows : public testing::Test
{
protected:
    FilmRows()
    {
        for (const Row& row : Rows)
        {
            CFindings findings;
            findings.Film = {row.Path, json::parse(row.Values)};
            findings.Done = TaskKind::Basic;
            if (*row.Error != '\0')
                findings.Errors["basic"] = row.Error;
            m_catalog.Store(findings, {});
        }
        m_catalog.MarkVanished("/films", [](int64_t, const std::string& path) { return path != "/films/gone.mkv"; });
        m_catalog.Commit();
    }

    // The letters of the films' names, in their order.
    std::string Query(const CFilmQuery& query) const
    {
        std::string names;
        CFilm film;
        std::string error;
        for (CFilmRows rows(m_catalog, query); rows.GetNext(film, error);)
            names += film.Path.substr(7, 1);
        return names;
    }

    WorkFolder m_folder;
    CCatalog m_catalog {"films.db", CCatalog::Access::Change};
};

struct Condition
{
    const char* Text;
    const char* Films;  // their letters
};

constexpr Condition Conditions[] = {
    {"hdr=DolbyVision and width>=3840",        "a"  },
    {"HDR = dolbyvision AND Width >= 3.84k",   "a"  },
    {"hdr=SDR",                                "b"  },
    {"hdr",                                    "ab" },
    {"not hdr",                                "cd" },
    {"hdr!=SDR",                               "acd"},
    {"width<2000",                             "b"  },
    {"width!=1920",                            "acd"},
    {"size>4G or size<1k",                     "ac" },
    {"duration>1:30:00",                       "a"  },
    {"duration>=1:30 and duration<=1:30",      "b"  },
    {"language=English",                       "a"  },
    {"language~english",                       "ab" },
    {"language='Old English'",                 "b"  },
    {"language='%'",                           ""   },
    {"title~'100%'",                           "a"  },
    {"title~'f_m'",                            "a"  },
    {"title~'0_'",                             ""   },
    {"title='it''s \"B\"'",                    "b"  },
    {"\"Video Scan\"=interlaced",              "b"  },
    {"\"Video Scan\"",                         "ab" },
    {"\"Width\"<=1920",                        "b"  },
    {"\"Audio Language\"=german",              "a"  },
    {"error",                                  "d"  },
    {"error~FILM",                             "d"  },
    {"kind=Audio",                             "c"  },
    {"file~mkv and not (width=1920 or error)", "a"  },
    {"width=1920 or width=3840 and hdr=SDR",   "b"  },
    {"not not width>1k",                       "ab" },
    {"not width>1k and not error",             "c"  },
    {"path~/films/ and resolution=1080p",      "b"  },
    {"title='; DROP TABLE films; --'",         ""   },
};

TEST_F(FilmRows, AreThoseThatFulfillTheCondition)
{
    for (const Condition& row : Conditions)
        EXPECT_EQ(Query({CFilter(row.Text), "", false}), row.Films) << row.Text;
}

TEST_F(FilmRows, AreSortedWithWhatIsNotKnownLast)
{
    const std::pair<const char*, const char*> orders[] = {
        {"",       "abcdg"},
        {"width",  "bagcd"},
        {"-width", "agbcd"},
        {"title",  "abcdg"},
        {"-title", "bacdg"},
        {"Size",   "cbadg"},
    };
    for (const auto& [sort, films] : orders)
        EXPECT_EQ(Query({CFilter(), sort, true}), films) << sort;
    EXPECT_EQ(Query({CFilter(), "", false}), "abcd");
    EXPECT_THROW(Query({CFilter(), "id", false}), std::runtime_error);
}

TEST_F(FilmRows, SayWhereAConditionIsWrong)
{
    const std::pair<const char*, const char*> wrongs[] = {
        {"",                   "at character 1: the name of a field is expected there" },
        {"hdr=",               "at character 5: there is no value after ="             },
        {"hdr=SDR and",        "at character 12: the name of a field is expected there"},
        {"foo=1",              "at character 1: there is no field \"foo\""             },
        {"(hdr=SDR",           "at character 9: a ) is missing"                        },
        {"hdr=SDR)",           "at character 8: \")\" is not expected there"           },
        {"width=wide",         "at character 7: width is a number"                     },
        {"width=1e999",        "at character 7: width is a number"                     },
        {"width~1",            "at character 7: width is a number"                     },
        {"codec<H264",         "at character 7: codec is a text"                       },
        {"title='open",        "at character 7: the quotation mark has no end"         },
        {"width ! 5",          "at character 7: there is a ! without its ="            },
        {"hdr SDR",            "at character 5: \"SDR\" is not expected there"         },
        {"\"Video Scan\"<abc", "at character 14: a text can be compared with"          },
    };
    for (const auto& [text, reason] : wrongs)
    {
        try
        {
            CFilter {text};
            ADD_FAILURE() << text << " is taken";
        }
        catch (const std::runtime_error& error)
        {
            EXPECT_THAT(error.what(), testing::HasSubstr(reason)) << text;
        }
    }
}

// People paste long lists of alternatives. What is too much for the database is refused before.
TEST_F(FilmRows, TakeConditionsAsLongAndDeepAsTheyMayBe)
{
    std::string longer = "width=3840";
    for (int count = 1; count < 500; ++count)
        longer += " or width=" + std::to_string(count);
    EXPECT_EQ(Query({CFilter(longer), "", false}), "a");
    EXPECT_THROW(CFilter(longer + " or hdr"), std::runtime_error);

    std::string deep = "width=3840";
    int taken = 0;
    for (; taken < 100; ++taken)
    {
        deep = "error or width and (" + deep + ")";
        try
        {
            CFilter {deep};
        }
        catch (const std::runtime_error& error)
        {
            EXPECT_THAT(error.what(), testing::HasSubstr("it is nested too deeply"));
            break;
        }
        EXPECT_EQ(Query({CFilter(deep), "", false}), "ad") << deep;
    }
    EXPECT_GE(taken, 10);
}

// What the parser takes, the database understands.
TEST_F(FilmRows, SurviveConditionsMadeOfAnyPieces)
{
    const char* const pieces[] = {"hdr", "width", "language", "error", "\"Width\"", "\"a\\\"", "'x''", "'%'",
                                  "and", "or",    "not",      "(",     ")",         "=",       "!=",   "~",
                                  "<=",  ">",     "5k",       "1:2",   "-1",        "\xff",    "\"",   "!"};
    std::mt19937 random(20);
    int taken = 0;
    for (int count = 0; count < 20'000; ++count)
    {
        std::string text;
        for (auto length = random() % 9; length > 0; --length)
            text += std::string(pieces[random() % std::size(pieces)]) + (random() % 4 == 0 ? "" : " ");
        std::optional<CFilter> filter;
        try
        {
            filter.emplace(text);
        }
        catch (const std::runtime_error&)
        {
            continue;
        }
        ++taken;
        EXPECT_NO_THROW(Query({*filter, "", true})) << text;
    }
    EXPECT_GT(taken, 100);
}
}
