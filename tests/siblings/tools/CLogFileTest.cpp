#include "siblings/tools/log/CLogFile.h"

#include "ToolsFolder.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace
{
constexpr int ProcessCount = 4;
constexpr int LineCount = 5000;

// A line of 40 bytes with its line break, so that a test knows when the file is full.
std::string TestLine(int process, int line)
{
    return "process " + std::to_string(process) + " line " + std::to_string(10'000 + line) + " ..................";
}
constexpr int64_t LineSize = 40;

void Append(CLogFile& file, const std::string& line)
{
    const std::string ended = line + "\n";
    file.Append(ended.data(), ended.size());
}

// The lines of the old file and of the new one.
std::vector<std::string> ReadBoth(const ToolsFolder& folder)
{
    folder.Write("both", folder.Read("log.1") + folder.Read("log"));
    return folder.ReadLines("both");
}

TEST(CLogFile, ProcessesNeitherMixNorLoseLinesNorRotateAFileThatIsNotFull)
{
    constexpr int64_t AllSize = ProcessCount * LineCount * LineSize;
    // No rotation, one rotation, and so many that most lines are in files that are dropped.
    for (const int64_t rotationSize : {AllSize + 1, AllSize * 6 / 10, int64_t {16 * 1024}})
    {
        SCOPED_TRACE(rotationSize);
        const ToolsFolder folder;
        ASSERT_TRUE(RunProcesses(ProcessCount,
                                 [&](int process)
                                 {
                                     CLogFile file(folder.AsString() + L"log", rotationSize);
                                     for (int line = 0; line < LineCount; ++line)
                                         Append(file, TestLine(process, line));
                                     return true;
                                 }));
        const int64_t oldSize = static_cast<int64_t>(folder.Read("log.1").size());
        EXPECT_GE(oldSize, rotationSize < AllSize ? rotationSize : 0);
        std::vector<std::string> lines = ReadBoth(folder);
        // Sorted only by "process N".
        std::ranges::stable_sort(lines, {}, [](const std::string& line) { return line.substr(0, 9); });
        EXPECT_TRUE(std::ranges::is_sorted(lines, std::ranges::less_equal {})) << "lines out of order, or twice";
        EXPECT_THAT(lines, testing::Each(testing::MatchesRegex("process [0-3] line 1[0-9]{4} \\.{18}")));
        EXPECT_GE(lines.size(), rotationSize > AllSize / 2 ? size_t {ProcessCount * LineCount} : 0) << "lines are lost";
    }
}

TEST(CLogFile, AWriterThatSleptThroughRotationsLosesNothing)
{
    const ToolsFolder folder;
    CLogFile sleeper(folder.AsString() + L"log", 2 * LineSize);
    Append(sleeper, TestLine(0, 0));
    CLogFile busy(folder.AsString() + L"log", 2 * LineSize);
    Append(busy, TestLine(1, 0));
    // The file that both had open is log.1 now: the next line goes there, and the one after it into the new file.
    Append(sleeper, TestLine(0, 1));
    Append(sleeper, TestLine(0, 2));
    EXPECT_EQ(folder.ReadLines("log.1").size(), 3u);
    EXPECT_THAT(folder.ReadLines("log"), testing::ElementsAre(TestLine(0, 2)));
    // Its file is moved and then replaced, so it has no name left.
    for (int line = 1; line < 5; ++line)
        Append(busy, TestLine(1, line));
    Append(sleeper, TestLine(0, 3));
    EXPECT_THAT(ReadBoth(folder), testing::Contains(TestLine(0, 3)).Times(1));
}
}
