#include "caller/film/ReadResult.h"
#include "caller/film/FilmFields.h"
#include "caller/film/ReadBlackBars.h"
#include "process/WorkFolder.h"

#include <gtest/gtest.h>
#include <random>

namespace
{
using nlohmann::json;

json Read(const std::string& text)
{
    WorkFolder::Write("result.xml", text);
    json values = json::object();
    return ReadResult("result.xml", values) ? values : json();
}

struct Value
{
    const char* Key;
    const char* Text;  // as the worker writes it
    json Read;
};

const Value Values[] = {
    {"Width",            "1920",                   1920                          },
    {"FPS",              "23.976023976023978",     23.976023976023978            },
    {"Width",            "wide",                   "wide"                        },
    {"Width",            "",                       nullptr                       },
    {"File Size",        "9000000000",             9'000'000'000                 },
    {"Name",             "1984",                   "1984"                        },
    {"Name",             " &lt;b&gt; &amp; &#x1;", " <b> & \x01"                 },
    {"Name",             " ",                      " "                           },
    {"Name",             "\xff",                   "\xef\xbf\xbd"                },
    {"Audio Codec",      "AC-3;AAC LC;",           {"AC-3", "AAC LC"}            },
    {"Audio Codec",      "AC-3;",                  json::array({"AC-3"})         },
    {"Audio Codec",      "",                       json::array()                 },
    {"Audio Title",      ";;Comments;",            {nullptr, nullptr, "Comments"}},
    {"Audio Channels",   "2;6;;",                  {2, 6, nullptr}               },
    {"$!@_ChapterTimes", "0|2000",                 {0, 2000}                     },
    {"$!@_ChapterNames", "A; B|C",                 {"A; B", "C"}                 },
    {"Latitude",         "+48.8577",               48.8577                       },
};

TEST(ReadResult, GivesNumbersAndListsByTheirKeys)
{
    const WorkFolder folder;
    for (const Value& row : Values)
        EXPECT_EQ(Read(std::string("<XMLPH><Item Name=\"") + row.Key + "\">" + row.Text + "</Item></XMLPH>"),
                  json({
                      {row.Key, row.Read}
        }))
            << row.Key << ": " << row.Text;
}

TEST(ReadResult, DropsAListWithMoreEntriesThanStreams)
{
    const WorkFolder folder;
    const json values = Read("<XMLPH><Item Name=\"Audio Streams\">2</Item><Item Name=\"Audio Title\">Director; Camera;B;</Item>"
                             "<Item Name=\"Audio Codec\">AC-3;MP2;</Item></XMLPH>");
    EXPECT_EQ(values, json({
                          {"Audio Streams", 2              },
                          {"Audio Codec",   {"AC-3", "MP2"}}
    }));
}

TEST(ReadResult, GivesAFilmNoneOfTheKeysOfTheCaller)
{
    CFilm film;
    film.Add({
        {"error",      "boom"         },
        {"vanished",   "1"            },
        {"Video Crop", "0x100x320x140"},
        {"Name",       "The \"error\""}
    });
    EXPECT_EQ(film.Values, json({
                               {"Name", "The \"error\""}
    }));
}

TEST(ReadResult, RefusesWhatIsNoWholeResult)
{
    const WorkFolder folder;
    const std::string result = "<XMLPH><Item Name=\"Width\">1920</Item></XMLPH>";
    EXPECT_FALSE(Read(result).is_null());
    for (size_t size = 0; size < result.size(); ++size)
        EXPECT_TRUE(Read(result.substr(0, size)).is_null()) << size;
    EXPECT_TRUE(Read("<html></html>").is_null());
    json values;
    EXPECT_FALSE(ReadResult("missing.xml", values));
}

// A result comes from a process that a film may have taken over.
TEST(ReadResult, SurvivesAnyBytes)
{
    const WorkFolder folder;
    const std::string result =
        "<XMLPH><Item Name=\"Width\">1920</Item><Item Name=\"Audio Channels\">2;6;</Item><Item Name=\"Video "
        "Crop\">0x30x320x210</Item><Item Name=\"HDR Format\"/></XMLPH>";
    std::mt19937 random(20);
    for (int count = 0; count < 3000; ++count)
    {
        std::string damaged = result;
        for (auto changes = random() % 8; changes > 0; --changes)
        {
            const size_t place = random() % damaged.size();
            if (random() % 2 == 0)
                damaged[place] = static_cast<char>(random());
            else
                damaged.insert(place, damaged.substr(random() % damaged.size(), random() % 40));
        }
        CFilm film {.Path = "film.mkv", .Values = Read(damaged)};
        ReadBlackBars("result.xml", film);
        if (!film.Values.is_object())
            continue;
        EXPECT_NO_THROW(GetCrop(film)) << damaged;
        for (const FilmField& field : GetFilmFields())
            EXPECT_NO_THROW(MakeFieldText(field.Get(film))) << damaged;
    }
}
}
