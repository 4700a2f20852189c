#include "RunWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
namespace fs = std::filesystem;

constexpr char NoDevices[] = "<XMLPH version=\"1.0\">\r\n<Item Name=\"Devices\"/>\r\n</XMLPH>";

class Devices : public testing::Test
{
protected:
    Devices()
    {
        std::string path = (fs::temp_directory_path() / "zv-devices-XXXXXX").string();
        m_folder = mkdtemp(path.data());
    }
    ~Devices() override
    {
        std::error_code ignored;
        fs::remove_all(m_folder, ignored);
    }

    std::string PathOf(const char* name) const { return (m_folder / name).string(); }

    WorkerRun Run(const std::string& variables, const std::string& result) const
    {
        return RunWorker({"/AnalyzeDevices", variables, result}, {"LD_DEBUG=libs", "ZV_DATA_DIR=" + m_folder.string()});
    }

    static std::string Read(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    fs::path m_folder;
};

TEST_F(Devices, AreNoneWhateverTheVariablesAre)
{
    const std::string known = "<XMLPH version=\"1.0\">\r\n<Item Name=\"IgnoredDevices\">a;b;</Item>\r\n</XMLPH>";
    const struct
    {
        const char* Name;
        std::string Content;
    } rows[] = {
        {"missing", ""},
        {"known", known},
        {"cut", known.substr(0, known.size() / 2)},
        {"huge", "<XMLPH version=\"1.0\">" + std::string(20'000'000, '<')},
        {"binary", std::string("\0\xff\xfe\x80<XMLPH", 10) + std::string(1000, '\0')},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.Name);
        const std::string variables = PathOf(row.Name);
        if (!row.Content.empty())
            std::ofstream(variables, std::ios::binary) << row.Content;
        const std::string result = PathOf("new folder/devices.xml");
        const WorkerRun run = Run(variables, result);
        EXPECT_EQ(run.Status, 0);
        EXPECT_THAT(run.Output, testing::MatchesRegex("Found 0 devices \\(devices will be listed below\\)\n\nTotal time: [0-9]+ ms\nResult: 0\n"));
        EXPECT_EQ(Read(result), NoDevices);
        for (const char* library : {"libcurl", "libX11", "libsqlite3", "libz.so"})
            EXPECT_THAT(run.Error, testing::Not(testing::HasSubstr(library)));
        fs::remove_all(fs::path(result).parent_path());
    }
    const std::string log = Read(PathOf("Logs/ZVWorker.log"));
    for (const char* line : {"Processing AnalyzeDevices task...", "Calling EnumerateDevices...", "0 devices found", "RetVal = 1",
                             "EnumerateDevices succeeded..."})
        EXPECT_THAT(log, testing::HasSubstr(line));
}

TEST_F(Devices, FailWithAResultThatCannotBeWritten)
{
    std::ofstream(PathOf("file")) << "no folder";
    for (const std::string& result : {PathOf("file/devices.xml"), m_folder.string(), std::string("/proc/devices.xml")})
    {
        SCOPED_TRACE(result);
        const WorkerRun run = Run(PathOf("missing"), result);
        EXPECT_EQ(run.Status, 255);
        EXPECT_THAT(run.Output, testing::EndsWith("\nResult: -1\n"));
        EXPECT_FALSE(fs::is_regular_file(result));
    }
}
}
