#include "FilmFolder.h"
#include "LoneWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace
{
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class Thumbnail : public testing::Test
{
protected:
    WorkerRun Run(const std::string& film, const std::string& thumbnail = "thumb.png") const
    {
        std::filesystem::remove(m_folder.PathOf("worker.log"));
        return RunWorker({"/Thumbnail", film, thumbnail},
                         {"ZV_DATA_DIR=" + m_folder.PathOf("data"), "ZV_LOG_FILE=" + m_folder.PathOf("worker.log")});
    }

    std::string ReadLog() const { return WorkFolder::Read(m_folder.PathOf("worker.log")); }

    const WorkFolder m_folder;
};

TEST_F(Thumbnail, FailsWithTheReason)
{
    WorkFolder::Write("film.txt", "text");
    ASSERT_EQ(mkfifo("pipe.mkv", 0644), 0);
    ASSERT_EQ(mkfifo("pipe.mp4", 0644), 0);
    std::filesystem::create_directory("folder.mkv");
    struct Row
    {
        const char* Film;
        const char* Reason;
    };
    const Row rows[] = {
        {"film.txt",    "Files of the type 'txt' are not played as video: film.txt"},
        {"missing.mkv", "File in use: missing.mkv"                                 },
        {"missing.mp4", "File in use: missing.mp4"                                 },
        {"folder.mkv",  "File in use: folder.mkv"                                  },
        {"pipe.mkv",    "File in use: pipe.mkv"                                    },
        {"pipe.mp4",    "File in use: pipe.mp4"                                    },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(row.Film);
        const WorkerRun run = Run(row.Film);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, EndsWith("\nResult: -1\n"));
        EXPECT_FALSE(std::filesystem::exists("thumb.png"));
        const std::string log = ReadLog();
        EXPECT_THAT(log, HasSubstr("Processing Thumbnail task..."));
        EXPECT_THAT(log, HasSubstr(row.Reason));
        EXPECT_THAT(log, Not(HasSubstr("Thumbnailing succeeded")));
    }
}

TEST_F(Thumbnail, KeepsTheFilmThatItIsMadeOf)
{
    WorkFolder::Write("film.mp4", "a film");
    std::filesystem::create_hard_link("film.mp4", "film.png");
    for (const char* const thumbnail : {"film.mp4", "./film.mp4", "film.png"})
    {
        SCOPED_TRACE(thumbnail);
        EXPECT_EQ(Run("film.mp4", thumbnail).Status, 255);
        EXPECT_THAT(ReadLog(), HasSubstr("The result would take the place of the input: " + std::string(thumbnail)));
        EXPECT_EQ(WorkFolder::Read("film.mp4"), "a film");
    }
}

TEST_F(Thumbnail, NeedsThePlayer)
{
    const std::filesystem::path libraries = std::filesystem::path(GetWorkerProgram()).parent_path();
    const LoneWorker worker(libraries / "libZVTools.so");
    WorkFolder::Write("film.mkv", "a film");
    const WorkerRun run = Run("film.mkv");
    EXPECT_EQ(run.Status, 255);
    EXPECT_THAT(run.Output, EndsWith("\nResult: -1\n"));
    EXPECT_THAT(ReadLog(), HasSubstr("There is no player library to open: film.mkv"));
}

class ThumbnailOfFilm : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FilmFolder::IsUsable())
            GTEST_SKIP() << "ffmpeg, mkvmerge or the codec component is not there";
    }

    static void Make(const std::string& name, int seconds, const std::string& filters = "null")
    {
        FilmFolder::Make("-f lavfi -i testsrc2=s=320x180:r=5:d=" + std::to_string(seconds) + " -vf \"" + filters +
                         "\" -c:v libx264 -preset veryfast -g 10 " + name);
    }

    // Makes thumb.png, and expects that nothing is left of what that took.
    static void MakeThumbnail(const std::string& film, const std::string& time)
    {
        const WorkerRun run =
            RunWorker({"/Thumbnail", film, "thumb.png", "", time}, {"ZV_DATA_DIR=" + std::filesystem::absolute("data").string(),
                                                                    "ZV_LOG_FILE=" + std::filesystem::absolute("log").string()});
        EXPECT_EQ(run.Status, 0) << FilmFolder::Read("log");
        EXPECT_EQ(run.Error, "");
        if (std::filesystem::exists("data/Temp"))
        {
            EXPECT_TRUE(std::filesystem::is_empty("data/Temp"));
        }
    }

    // How much the thumbnail is like the frame of a time, as ffmpeg decodes, turns and compares them, in decibels.
    static double GetLikeness(const std::string& film, const std::string& seconds)
    {
        FilmFolder::Make("-ss " + seconds + " -i " + film + " -frames:v 1 frame.png");
        FilmFolder::RunProgram("ffmpeg -nostdin -i thumb.png -i frame.png -lavfi psnr -f null -");
        const std::string log = FilmFolder::Read("program.log");
        const std::string name = "average:";
        const size_t found = log.find(name);
        return found == std::string::npos ? 0 : strtod(log.c_str() + found + name.size(), nullptr);
    }

    // Frames of different times have less than 20.
    static constexpr double Same = 35;

    FilmFolder m_folder;
};

TEST_F(ThumbnailOfFilm, ShowsTheFrameOfItsTime)
{
    Make("long.mkv", 80);
    Make("black.mkv", 80, "drawbox=t=fill:color=black:enable='lt(t,60)'");
    Make("short.mp4", 12);
    FilmFolder::Make("-i short.mp4 -c copy -metadata:s:v:0 rotate=90 turned.mp4");
    struct Row
    {
        const char* Film;
        const char* Time;
        const char* Seconds;
    };
    const Row rows[] = {
        {"long.mkv",   "",      "5" },
        {"long.mkv",   "33000", "33"},
        {"long.mkv",   "79000", "70"},
        {"black.mkv",  "5000",  "65"},
        {"short.mp4",  "5000",  "2" },
        {"turned.mp4", "1000",  "1" },
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE(std::string(row.Film) + " " + row.Time);
        MakeThumbnail(row.Film, row.Time);
        EXPECT_GT(GetLikeness(row.Film, row.Seconds), Same);
    }
}

TEST_F(ThumbnailOfFilm, IsTheCover)
{
    Make("film.mp4", 12);
    const auto addCover = [](const std::string& size)
    {
        FilmFolder::Make("-f lavfi -i mandelbrot=s=" + size + " -frames:v 1 cover.jpg");
        FilmFolder::Make("-i film.mp4 -i cover.jpg -map 0 -map 1 -c copy -disposition:v:1 attached_pic covered.mp4");
    };
    addCover("600x400");
    MakeThumbnail("covered.mp4", "");
    EXPECT_EQ(FilmFolder::Read("thumb.png"), FilmFolder::Read("cover.jpg"));
    // Some programs give films without a cover one of one pixel.
    addCover("1x1");
    MakeThumbnail("covered.mp4", "");
    EXPECT_GT(GetLikeness("film.mp4", "2"), Same);
}
}
