#include "video/thumbnail/CZVVideoThumbHelper.h"

#include "mp4/AtomBytes.h"
#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVFilename.h"
#include "system/filename/ZVNativePath.h"
#include "video/StandIns.h"
#include "video/WithTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;
using namespace AtomBytes;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

const Bytes FTYP = Atom("ftyp", "isom" + Zeros(4));

// A movie of ten seconds without tracks, and with a cover.
Bytes Movie(const Bytes& cover)
{
    const Bytes data = Atom("data", Number(13, 4) + Zeros(4) + cover);
    const Bytes handler = FullAtom("hdlr", Zeros(4) + "mdir" + Zeros(12));
    return Atom("moov", FullAtom("mvhd", Zeros(8) + Number(1000, 4) + Number(10'000, 4) + Zeros(80)) +
                            Atom("udta", FullAtom("meta", handler + Atom("ilst", Atom("covr", data)))));
}

const StandInFilm SomeFilm = {.Attempts = {{7}}};
const std::string SomeFrame = "3x2 of 7, turned 0, alpha 255";

// What came of a thumbnail.
struct Outcome
{
    bool Result = false;
    std::string Picture;  // the content of its file, "" without one
    std::string Log;
};

class CZVVideoThumbHelperTest : public WithTools
{
protected:
    ~CZVVideoThumbHelperTest() override { EXPECT_THAT(GetCovers(), IsEmpty()) << "left in the folder for temporary files"; }

    // Makes a thumbnail of a file with some content, which the player takes for a film.
    Outcome Run(const std::string& name, const Bytes& content, const StandInFilm& film = SomeFilm) const
    {
        m_folder.Write(name, content);
        return RunOn(name, film, "thumb.png");
    }
    Outcome RunOn(const std::string& name, const StandInFilm& film, const std::string& thumbnail) const
    {
        StandIns::Show(film);
        fs::remove(m_folder.PathOf(thumbnail));
        const size_t logged = m_folder.Read("worker.log").size();
        const ZVString path = TextAt(name);
        const bool result = CZVVideoThumbHelper().GetThumbnailZV(path, ZVFilename(path).GetExtension(), TextAt(thumbnail),
                                                                 TextAt("metadata.xml"), 5000);
        EXPECT_FALSE(m_folder.Has("metadata.xml"));
        return {result, m_folder.Read(thumbnail), m_folder.Read("worker.log").substr(logged)};
    }

    static std::vector<std::string> GetCovers()
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(ZVNativePath(ZVFileSystem::GetDirectoryTemp()).GetBytes()))
            names.push_back(entry.path().filename());
        return names;
    }
};

TEST_F(CZVVideoThumbHelperTest, SaysWhyItFails)
{
    struct Row
    {
        const char* File;
        StandInFilm Film;
        const char* Reason;
    };
    const Row rows[] = {
        {"film.mkv", {.Ends = true},       "There is nothing to see in: "                     },
        {"film.mkv", {.Opens = false},     "Unable to open video file: "                      },
        {"film.mkv", {.HasPlayer = false}, "There is no player library to open: "             },
        {"film.txt", SomeFilm,             "Files of the type 'txt' are not played as video: "},
        {"film.m4a", SomeFilm,             "Files of the type 'm4a' are not played as video: "},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Reason);
        const Outcome outcome = Run(row.File, "a film", row.Film);
        EXPECT_FALSE(outcome.Result);
        EXPECT_EQ(outcome.Picture, "");
        EXPECT_THAT(outcome.Log, HasSubstr(row.Reason + m_folder.PathOf(row.File)));
    }
}

TEST_F(CZVVideoThumbHelperTest, TakesACover)
{
    const Bytes cover = "picture 640x480";
    struct Row
    {
        const char* Name;
        const char* File;
        Bytes Content;
        std::string Picture;
    };
    const Row rows[] = {
        {"a cover",               "film.mp4", FTYP + Movie(cover),         cover        },
        {"16 pixels",             "film.mp4", FTYP + Movie("picture 4x4"), "picture 4x4"},
        {"15 pixels",             "film.mp4", FTYP + Movie("picture 5x3"), SomeFrame    },
        {"one pixel",             "film.mp4", FTYP + Movie("picture 1x1"), SomeFrame    },
        {"no picture",            "film.mp4", FTYP + Movie("a poem"),      SomeFrame    },
        {"no cover",              "film.mp4", FTYP + Movie(""),            SomeFrame    },
        {"damaged",               "film.mp4", FTYP + Atom("moov"),         SomeFrame    },
        {"no ftyp",               "film.mp4", Movie(cover),                SomeFrame    },
        {"QuickTime",             "film.mov", Movie(cover),                cover        },
        {"QuickTime in capitals", "film.MOV", Movie(cover),                SomeFrame    },
        {"not of the family",     "film.mkv", FTYP + Movie(cover),         SomeFrame    },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const Outcome outcome = Run(row.File, row.Content);
        EXPECT_TRUE(outcome.Result);
        EXPECT_EQ(outcome.Picture, row.Picture);
        // The film is opened in any case, but played only for a frame.
        EXPECT_THAT(StandIns::GetCalls(), Contains("Open " + m_folder.PathOf(row.File)));
        EXPECT_THAT(StandIns::GetCalls(), Contains("Play").Times(row.Picture == SomeFrame ? 1 : 0));
    }
    EXPECT_THAT(Run("film.mp4", Movie(cover)).Log,
                HasSubstr("No cover is read from " + m_folder.PathOf("film.mp4") + ": Missing FTYP Atom"));
}

TEST_F(CZVVideoThumbHelperTest, ManyProcessesTakeTheirOwnCovers)
{
    constexpr int Count = 50;
    const auto nameOf = [](int index, const char* extension) { return std::to_string(index) + extension; };
    const auto coverOf = [](int index) { return "picture 640x" + std::to_string(1000 + index); };
    for (int index = 0; index < Count; ++index)
        m_folder.Write(nameOf(index, ".mp4"), FTYP + Movie(coverOf(index)));
    EXPECT_TRUE(
        RunProcesses(Count, [&](int index)
                     { return RunOn(nameOf(index, ".mp4"), SomeFilm, nameOf(index, ".png")).Picture == coverOf(index); }));
}
}
