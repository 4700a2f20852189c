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
    using Arguments = std::vector<std::string>;
    for (const Arguments& arguments :
         {Arguments({"/tEST"}), Arguments({" \"/Test\" "}), Arguments({"in front", "/Test", "behind"})})
    {
        const WorkerRun run = RunWorker(arguments);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, MatchesRegex("Total time: [0-9]+ ms\nResult: -1\n"));
        EXPECT_EQ(run.Error, "");
    }
}

TEST(Report, AnUnknownCommandIsNamedAndExplained)
{
    const std::string longText(100'000, 'x');
    const struct
    {
        const char* Name;
        std::vector<std::string> Arguments;
        std::string Joined;
    } rows[] = {
        {"no arguments",                      {},                    ""                  },
        {"unknown",                           {"/AnalyzeDX", "a b"}, "/AnalyzeDX \"a b\""},
        {"too few arguments",                 {"/Thumbnail", "a"},   "/Thumbnail a"      },
        {"long",                              {longText},            longText            },
        {"percent signs print as themselves", {"%s%n%d"},            "%s%n%d"            },
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const WorkerRun run = RunWorker(row.Arguments);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, StartsWith("Unknown command '" + row.Joined + "'\n\n" + Usage + "Total time: "));
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
        {"UTF-8 prints it",          "LC_ALL=C.UTF-8", "/T\xc3\xa4st\xe6\x97\xa5", "'/T\xc3\xa4st\xe6\x97\xa5'"},
        {"the C locale cannot",      "LC_ALL=C",       "/T\xc3\xa4st\xe6\x97\xa5", "'/T?st?'"                  },
        {"no locale at all",         "ZV_UNUSED=1",    "\xc3\xa4",                 "'?'"                       },
        {"above the basic plane",    "LC_ALL=C.UTF-8", "\xf0\x9f\x98\x80",         "'?'"                       },
        {"half of a surrogate pair", "LC_ALL=C.UTF-8", "\xed\xa0\x80",             "'?'"                       },
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
    EXPECT_THAT(RunWorker({"nonsense"}, {}, OutputKind::File).Output, MatchesRegex(ReportPattern));
    EXPECT_EQ(RunWorker({"nonsense"}, {}, OutputKind::Closed).Status, 255);
}

}
