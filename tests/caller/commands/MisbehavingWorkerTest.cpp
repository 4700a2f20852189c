#include "CallerFolder.h"

#include <gmock/gmock.h>

namespace
{
namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

struct Misbehaviour
{
    const char* Film;
    const char* Reason;  // the start of it; empty when the film is well
};

constexpr Misbehaviour Misbehaviours[] = {
    {"abort.mkv",     "the worker crashed (Aborted)"                   },
    {"astray.mkv",    "the worker's result cannot be read"             },
    {"child.mkv",     ""                                               },
    {"good.mkv",      ""                                               },
    {"half.mkv",      "the worker's result cannot be read"             },
    {"hang.mkv",      "the worker did not end within 1.5 seconds"      },
    {"logpipe.mkv",   "the worker failed and did not say why"          },
    {"memory.mkv",    "the worker took more than 150 MiB of memory"    },
    {"mute.mkv",      "the worker ended before it began; the tools lib"},
    {"nothing.mkv",   "the worker's result cannot be read"             },
    {"print.mkv",     "the worker did not end within 1.5 seconds"      },
    {"refuse.mkv",    "The film is <torn>."                            },
    {"seen1.mkv",     ""                                               },
    {"seen2.mkv",     ""                                               },
    {"segv.mkv",      "the worker crashed (Segmentation fault)"        },
    {"stop.mkv",      "the worker did not end within 1.5 seconds"      },
    {"z/good too.ts", ""                                               },
};

TEST(MisbehavingWorker, IsARowWithItsReasonAndEndsNoScan)
{
    const CallerFolder folder;
    fs::create_directory("films/z");
    for (const Misbehaviour& row : Misbehaviours)
        CallerFolder::AddFilms({row.Film});
    const CallerRun run = folder.Run(CallerFolder::StandInScan({"--jobs", "4", "--time-limit", "1.5", "--memory", "150Mi"}));
    EXPECT_EQ(run.Status, 1) << run.Error;
    EXPECT_THAT(run.Output, StartsWith("17 films looked at, 12 failed; 0 unchanged, 0 vanished"));
    folder.ExpectNothingLeft();
    std::map<std::string, nlohmann::json> films = folder.List();
    EXPECT_EQ(films.size(), std::size(Misbehaviours));
    for (const Misbehaviour& row : Misbehaviours)
    {
        const nlohmann::json& film = films[row.Film];
        if (*row.Reason == '\0')
            EXPECT_EQ(film.value("Width", 0), 1920) << film;
        else
            EXPECT_THAT(film.value("error", ""), StartsWith(row.Reason)) << row.Film;
    }
}

// A film without a picture is no failure, so the silence of the worker must be one.
TEST(MisbehavingWorker, ThatDoesNotBeginHasNoPictureToTell)
{
    const CallerFolder folder;
    CallerFolder::AddFilms({"mute.mkv"});
    EXPECT_THAT(folder.Run(CallerFolder::Scan({"--worker", ZV_WORKER_STAND_IN})).Output, HasSubstr("1 failed"));
    EXPECT_THAT(folder.List()["mute.mkv"].value("error", ""), StartsWith("the worker ended before it began"));
    EXPECT_THAT(folder.Run({"thumb", "films/mute.mkv", "a.png", "--worker", ZV_WORKER_STAND_IN}).Error,
                HasSubstr("the worker ended before it began; the tools library is missing"));
}

// No row says that a film failed of which nobody has looked at a byte.
TEST(MisbehavingWorker, ThatCannotBeStartedStopsEveryCommandWithASentence)
{
    const CallerFolder folder;
    CallerFolder::AddFilms({"a.mkv"});
    WorkFolder::Write("no program", "");
    const std::pair<const char*, const char*> programs[] = {
        {"missing",    "No such file or directory"},
        {"no program", "Permission denied"        },
        {"films",      "Permission denied"        },
    };
    for (const auto& [program, reason] : programs)
    {
        const std::string sentence = "zivora: the worker " + folder.PathOf(program) + " cannot be started: " + reason + "\n";
        for (const char* const command : {"info", "crop", "scan"})
        {
            const CallerRun run = folder.Run({command, "films", "--worker", folder.PathOf(program)});
            EXPECT_EQ(run.Status, 1) << command;
            EXPECT_EQ(run.Error, sentence) << command;
        }
        EXPECT_FALSE(fs::exists("data")) << program << ": there is a catalog";
    }
}

struct CallerEnd
{
    int Signal;
    int Status;
};

constexpr CallerEnd CallerEnds[] = {
    {SIGINT,  130          },
    {SIGTERM, 130          },
    {SIGHUP,  130          },
    {SIGKILL, 128 + SIGKILL},
};

TEST(MisbehavingWorker, GoesWithTheCaller)
{
    for (const CallerEnd& end : CallerEnds)
    {
        const CallerFolder folder;
        CallerFolder::AddFilms({"a.mkv", "hang.mkv", "print.mkv", "stop.mkv"});
        CallerProcess scan = folder.Start(CallerFolder::StandInScan({"--jobs", "3"}));
        EXPECT_TRUE(folder.WaitForRun("stop.mkv"));
        scan.Kill(end.Signal);
        const CallerRun run = scan.Finish();
        EXPECT_EQ(run.Status, end.Status) << run.Error;
        folder.ExpectNoProcessLeft();
        if (end.Signal == SIGKILL)
        {
            // What lies there is cleared away by the next, when it cannot be that somebody is about to begin.
            for (const auto& entry : fs::directory_iterator("temporary"))
                fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::minutes(2));
            EXPECT_EQ(folder.Run(CallerFolder::StandInScan({"--time-limit", "0.1"})).Status, 1);
        }
        else
            EXPECT_EQ(folder.List().count("a.mkv"), 1U) << "what was done before is lost";
        folder.ExpectNothingLeft();
    }
}
}
