#include "RunWorker.h"

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
        std::filesystem::remove("worker.log");
        return RunWorker({"/Thumbnail", film, thumbnail},
                         {"ZV_DATA_DIR=" + m_folder.PathOf("data"), "ZV_LOG_FILE=" + m_folder.PathOf("worker.log")});
    }

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
        const std::string log = WorkFolder::Read("worker.log");
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
        EXPECT_THAT(WorkFolder::Read("worker.log"),
                    HasSubstr("The result would take the place of the input: " + std::string(thumbnail)));
        EXPECT_EQ(WorkFolder::Read("film.mp4"), "a film");
    }
}
}
