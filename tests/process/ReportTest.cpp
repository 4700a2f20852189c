#include "RunWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using testing::MatchesRegex;

void CloseOutput()
{
    close(STDOUT_FILENO);
}

constexpr char ReportPattern[] = "Total time: [0-9]+ ms\nResult: -1\n";

constexpr char Usage[] =
    "\n\nExample usage:\n"
    "Example thumbnail: ZVWorker.exe /Thumbnail \"c:\\Video.mpg\" \"c:\\Video Thumb.png\" \"c:\\Metadata.xml\" 5000\n"
    "Example analyze: ZVWorker.exe /AnalyzeDX \"c:\\Video.mpg\" \"c:\\Video.xml\"\n"
    "Example analyze: ZVWorker.exe /AnalyzeRP \"c:\\Video.rv\" \"c:\\Video.xml\" \"c:\\RPFailureCount.xml\"\n"
    "Example device analysis: ZVWorker.exe /AnalyzeDevices \"c:\\InputVariables.xml\" \"c:\\Devices.xml\"\n"
    "Example enumerate source filters: ZVWorker.exe /EnumSourceFilters \"c:\\FilterList.xml\"\n"
    "Example enumerate DSP filters: ZVWorker.exe /EnumDSPFilters \"c:\\FilterList.xml\"\n";

TEST(Report, TestPrintsTheTwoLinesAndFails)
{
    const WorkerRun run = RunWorker({"in front", " \"/tEST\" ", "behind"});
    EXPECT_EQ(run.Status, 255);
    EXPECT_THAT(run.Output, MatchesRegex(ReportPattern));
    EXPECT_EQ(run.Error, "");
    EXPECT_EQ(RunWorker({"/Test"}, {}, CloseOutput).Status, 255) << "without an output too";
}

TEST(Report, AnUnknownCommandIsNamedAndExplained)
{
    const auto expectName =
        [](const std::vector<std::string>& arguments, const std::string& name, const char* locale = "LC_ALL=C.UTF-8")
    {
        const WorkerRun run = RunWorker(arguments, {locale});
        EXPECT_EQ(run.Status, 255);
        const std::string expected = "Unknown command '" + name + "'" + Usage;
        EXPECT_EQ(run.Output.substr(0, expected.size()), expected);
        EXPECT_THAT(run.Output.substr(std::min(expected.size(), run.Output.size())), MatchesRegex(ReportPattern));
    };
    expectName({}, "");
    expectName({"/Thumbnail", "too few"}, "/Thumbnail \"too few\"");
    expectName({"%s%n%d"}, "%s%n%d");
    expectName({std::string(100'000, 'x')}, std::string(100'000, 'x'));
    // A character that cannot be printed costs no more than itself.
    expectName({"/T\xc3\xa4st\xe6\x97\xa5"}, "/T\xc3\xa4st\xe6\x97\xa5");
    expectName({"/T\xc3\xa4st\xe6\x97\xa5"}, "/T?st?", "LC_ALL=C");
    expectName({"above the basic plane: \xf0\x9f\x98\x80"}, "\"above the basic plane: ?\"");
}
}
