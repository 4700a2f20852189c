#include "RunWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr char ReportPattern[] = "(.|\n)*Total time: [0-9]+ ms\nResult: -1\n";

constexpr char Usage[] =
    "Example usage:\n"
    "Example thumbnail: ZVWorker.exe /Thumbnail \"c:\\Video.mpg\" \"c:\\Video Thumb.png\" \"c:\\Metadata.xml\" 5000\n"
    "Example analyze: ZVWorker.exe /AnalyzeDX \"c:\\Video.mpg\" \"c:\\Video.xml\"\n"
    "Example analyze: ZVWorker.exe /AnalyzeRP \"c:\\Video.rv\" \"c:\\Video.xml\" \"c:\\RPFailureCount.xml\"\n"
    "Example device analysis: ZVWorker.exe /AnalyzeDevices \"c:\\InputVariables.xml\" \"c:\\Devices.xml\"\n"
    "Example enumerate source filters: ZVWorker.exe /EnumSourceFilters \"c:\\FilterList.xml\"\n"
    "Example enumerate DSP filters: ZVWorker.exe /EnumDSPFilters \"c:\\FilterList.xml\"\n";

TEST(Report, TestPrintsTheTwoLinesAndFails)
{
    for (const std::vector<std::string>& arguments : {
             std::vector<std::string> {"/Test"      },
              {     "/tEST"             },
              { " \"/Test\" " },
              {         "in front", "/Test", "behind"}
    })
    {
        const WorkerRun run = RunWorker(arguments);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, MatchesRegex("Total time: [0-9]+ ms\nResult: -1\n"));
        EXPECT_EQ(run.Error, "");
    }
}

TEST(Report, AnUnknownCommandIsNamedAndExplained)
{
    const struct
    {
        const char* Name;
        std::vector<std::string> Arguments;
        const char* Joined;
    } rows[] = {
        {"no arguments",                      {},                                 ""                     },
        {"unknown",                           {"/AnalyzeDX", "a b"},              "/AnalyzeDX \"a b\""   },
        {"too few arguments",                 {"/Thumbnail", "a"},                "/Thumbnail a"         },
        {"too few behind it",                 {"x", "y", "/GetMonitorRect", "1"}, "x y /GetMonitorRect 1"},
        {"longer name",                       {"/Testing"},                       "/Testing"             },
        {"percent signs print as themselves", {"%s%n%d"},                         "%s%n%d"               },
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const WorkerRun run = RunWorker(row.Arguments);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, StartsWith(std::string("Unknown command '") + row.Joined + "'\n\n" + Usage + "Total time: "));
        EXPECT_THAT(run.Output, MatchesRegex(ReportPattern));
    }
}

TEST(Report, ACharacterOutsideTheLocaleCostsNoMoreThanItself)
{
    const struct
    {
        const char* Name;
        const char* Locale;
        const char* Argument;
        const char* Printed;
    } rows[] = {
        {"UTF-8 prints it",                   "LC_ALL=C.UTF-8",     "/T\xc3\xa4st\xe6\x97\xa5", "'/T\xc3\xa4st\xe6\x97\xa5'"},
        {"the C locale cannot",               "LC_ALL=C",           "/T\xc3\xa4st\xe6\x97\xa5", "'/T?st?'"                  },
        {"an unknown locale is the C locale", "LC_ALL=xx_XX.UTF-8", "\xc3\xa4",                 "'?'"                       },
        {"no locale at all",                  "ZV_UNUSED=1",        "\xc3\xa4",                 "'?'"                       },
        {"above the basic plane",             "LC_ALL=C.UTF-8",     "\xf0\x9f\x98\x80",         "'?'"                       },
        {"half of a surrogate pair",          "LC_ALL=C.UTF-8",     "\xed\xa0\x80",             "'?'"                       },
        {"invalid bytes read as Latin-1",     "LC_ALL=C.UTF-8",     "\xe9\xff",                 "'\xc3\xa9\xc3\xbf'"        },
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const WorkerRun run = RunWorker({row.Argument}, {row.Locale});
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, HasSubstr(row.Printed));
        EXPECT_THAT(run.Output, MatchesRegex(ReportPattern));
    }
}

TEST(Report, StandsLastWhateverTheOutputIs)
{
    const WorkerRun toFile = RunWorker({"nonsense"}, {}, OutputKind::File);
    EXPECT_EQ(toFile.Status, 255);
    EXPECT_THAT(toFile.Output, MatchesRegex(ReportPattern));

    const WorkerRun nowhere = RunWorker({"nonsense"}, {}, OutputKind::Closed);
    EXPECT_EQ(nowhere.Status, 255);
}

TEST(Report, ALongArgumentIsPrintedWhole)
{
    const std::string argument(100'000, 'x');
    const WorkerRun run = RunWorker({argument});
    EXPECT_THAT(run.Output, StartsWith("Unknown command '" + argument + "'\n\n"));
    EXPECT_THAT(run.Output, MatchesRegex(ReportPattern));
}
}
