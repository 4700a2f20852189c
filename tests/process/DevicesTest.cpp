#include "RunWorker.h"
#include "WorkFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
namespace fs = std::filesystem;

constexpr char NoDevices[] = "<XMLPH version=\"1.0\">\r\n<Item Name=\"Devices\"/>\r\n</XMLPH>";
constexpr char Report[] = "Found 0 devices \\(devices will be listed below\\)\n\nTotal time: [0-9]+ ms\nResult: 0\n";

WorkerRun ListDevices(const std::string& variables, const std::string& result)
{
    return RunWorker({"/AnalyzeDevices", variables, result}, {"LD_DEBUG=libs", "ZV_DATA_DIR=" + fs::current_path().string()});
}

TEST(Devices, AreNoneWhateverTheVariablesAre)
{
    const WorkFolder folder;
    const std::string known = "<XMLPH version=\"1.0\">\r\n<Item Name=\"IgnoredDevices\">a;b;</Item>\r\n</XMLPH>";
    WorkFolder::Write("known", known);
    WorkFolder::Write("cut", known.substr(0, known.size() / 2));
    WorkFolder::Write("huge", "<XMLPH version=\"1.0\">" + std::string(20'000'000, '<'));
    WorkFolder::Write("binary", std::string("\0\xff\xfe\x80<XMLPH", 10) + std::string(1000, '\0'));
    for (const char* variables : {"missing", "known", "cut", "huge", "binary"})
    {
        SCOPED_TRACE(variables);
        const WorkerRun run = ListDevices(variables, "new folder/devices.xml");
        EXPECT_EQ(run.Status, 0);
        EXPECT_THAT(run.Output, testing::MatchesRegex(Report));
        EXPECT_EQ(WorkFolder::Read("new folder/devices.xml"), NoDevices);
        for (const char* library : {"libcurl", "libX11", "libsqlite3", "libz.so"})
            EXPECT_THAT(run.Error, testing::Not(testing::HasSubstr(library)));
        fs::remove_all("new folder");
    }
    const std::string log = WorkFolder::Read("Logs/ZVWorker.log");
    for (const char* line : {"Processing AnalyzeDevices task...", "Calling EnumerateDevices...", "0 devices found", "RetVal = 1",
                             "EnumerateDevices succeeded..."})
        EXPECT_THAT(log, testing::HasSubstr(line));
}

TEST(Devices, FailWithAResultThatCannotBeWritten)
{
    const WorkFolder folder;
    WorkFolder::Write("file", "no folder");
    for (const char* result : {"file/devices.xml", "."})
    {
        const WorkerRun run = ListDevices("missing", result);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, testing::EndsWith("\nResult: -1\n")) << result;
    }
}
}
