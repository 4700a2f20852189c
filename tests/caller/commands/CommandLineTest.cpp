#include "CallerFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>

namespace
{
using testing::HasSubstr;

struct Use
{
    std::vector<std::string> Arguments;
    int Status;
    const char* Error;  // a part of it
};

TEST(CommandLine, SaysWhatIsWrongWithIt)
{
    const CallerFolder folder;
    const Use uses[] = {
        {{"scan", "films", "--jobs", "0"},            2, "--jobs: "                                                                 },
        {{"scan", "films", "--time-limit", "0"},      2, "--time-limit: "                                                           },
        {{"scan", "films", "--memory", "much"},       2, "--memory: "                                                               },
        {{"scan", "missing"},                         1, "zivora: there is no folder missing"                                       },
        {{"scan", "films", "--to", "/proc/no/films"}, 1, "zivora: "                                                                 },
        {{"list", "--where", "width>"},               2, "--where: the condition is wrong at character 7: there is no value after >"},
        {{"list", "--sort", "-weight"},               2, "--sort: there is no field \"-weight\""                                    },
        {{"list", "--columns", "file,weight"},        2, "--columns: there is no field \"weight\""                                  },
        {{"list", "--csv", "--json"},                 2, "excludes"                                                                 },
        {{"list", "--json", "--columns", "file"},     2, "excludes"                                                                 },
        {{"thumb", "a.mkv", "a.gif"},                 2, "PICTURE: its name must end with .jpg, .png or .webp"                      },
        {{"thumb", "a.mkv", "a.png", "--at", "1:61"}, 2, "--at: it is no time: 1:61"                                                },
        {{"list"},                                    1, "/data/zivora/catalog.db: zivora scan makes one"                           },
    };
    for (const Use& use : uses)
    {
        const CallerRun run = folder.Run(use.Arguments);
        EXPECT_EQ(run.Status, use.Status) << testing::PrintToString(use.Arguments);
        EXPECT_THAT(run.Error, HasSubstr(use.Error));
        EXPECT_EQ(run.Output, "") << testing::PrintToString(use.Arguments);
    }
    EXPECT_FALSE(std::filesystem::exists("data")) << "somebody who only asked has a catalog";
}

TEST(CommandLine, HelpsWithAnExample)
{
    const CallerFolder folder;
    for (const std::string command : {"info", "thumb", "crop", "scan", "list"})
    {
        const CallerRun run = folder.Run({command, "--help"});
        EXPECT_EQ(run.Status, 0) << command;
        EXPECT_THAT(run.Output, HasSubstr("Example:  zivora " + command + " "));
    }
}

TEST(CommandLine, CountsWhatCannotBePrintedAsFailed)
{
    const CallerFolder folder;
    CallerFolder::AddFilms({"a.mkv"});
    const auto fill = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
    const CallerRun run = folder.Run({"info", "films/a.mkv", "--worker", ZV_WORKER_STAND_IN}, fill);
    EXPECT_EQ(run.Status, 1);
    EXPECT_THAT(run.Error, HasSubstr("zivora: not all of the output could be written"));
}
}
