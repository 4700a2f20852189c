#include "siblings/tools/log/CLogFile.h"

#include "ToolsFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{
using testing::ElementsAre;

constexpr int ProcessCount = 4;
constexpr int LineCount = 5000;

void Append(CLogFile& file, const std::string& line)
{
    const std::string ended = line + "\n";
    file.Append(ended.data(), ended.size());
}

// Lines of 40 bytes with their breaks, so that a test knows when the file is full.
std::string TestLine(int process, int line)
{
    char text[64];
    snprintf(text, sizeof text, "process %d line %5d ................", process, line);
    return text;
}
constexpr int64_t LineSize = 40;

bool AppendAll(const ToolsFolder& folder, int process, int64_t rotationSize)
{
    CLogFile file(folder.AsString() + L"log", rotationSize);
    for (int line = 0; line < LineCount; ++line)
        Append(file, TestLine(process, line));
    return true;
}

// The lines of the old file and of the new one.
std::vector<std::string> ReadBoth(const ToolsFolder& folder)
{
    std::vector<std::string> lines = folder.ReadLines("log.1");
    for (std::string& line : folder.ReadLines("log"))
        lines.push_back(std::move(line));
    return lines;
}

// The numbers of the lines that there are of each process; every line must be one that was written, whole.
std::map<int, std::vector<int>> CountLines(const std::vector<std::string>& lines)
{
    std::map<int, std::vector<int>> found;
    for (const std::string& text : lines)
    {
        int process = -1;
        int line = -1;
        if (sscanf(text.c_str(), "process %d line %d", &process, &line) != 2 || text != TestLine(process, line))
            ADD_FAILURE() << "not a line: " << text;
        found[process].push_back(line);
    }
    return found;
}

TEST(CLogFile, ProcessesNeitherMixNorLoseLines)
{
    struct Row
    {
        const char* Name;
        int64_t RotationSize;
        bool HasOldFile;
    };
    for (const Row& row : {
             Row {"without rotation",  ProcessCount * LineCount * LineSize + 1,      false},
             Row {"with one rotation", ProcessCount * LineCount * LineSize * 6 / 10, true }
    })
    {
        SCOPED_TRACE(row.Name);
        const ToolsFolder folder;
        ASSERT_TRUE(RunProcesses(ProcessCount, [&](int process) { return AppendAll(folder, process, row.RotationSize); }));
        EXPECT_EQ(folder.Has("log.1"), row.HasOldFile);
        std::map<int, std::vector<int>> found = CountLines(ReadBoth(folder));
        for (int process = 0; process < ProcessCount; ++process)
        {
            ASSERT_EQ(found[process].size(), static_cast<size_t>(LineCount));
            EXPECT_TRUE(std::is_sorted(found[process].begin(), found[process].end()));
        }
    }
}

TEST(CLogFile, OnlyFullFilesAreRotatedHoweverManyProcessesTry)
{
    constexpr int64_t RotationSize = 16 * 1024;
    const ToolsFolder folder;
    int64_t smallest = INT64_MAX;
    const auto lookAtOldFile = [&]
    {
        struct stat state;
        if (stat(folder.PathOf("log.1").c_str(), &state) == 0)
            smallest = std::min<int64_t>(smallest, state.st_size);
    };
    ASSERT_TRUE(RunProcesses(
        ProcessCount, [&](int process) { return AppendAll(folder, process, RotationSize); }, lookAtOldFile));
    lookAtOldFile();
    EXPECT_GE(smallest, RotationSize);
    EXPECT_NE(smallest, INT64_MAX);
    CountLines(ReadBoth(folder));
}

TEST(CLogFile, AWriterThatSleptThroughRotationsLosesNothing)
{
    const ToolsFolder folder;
    CLogFile sleeper(folder.AsString() + L"log", 2 * LineSize);
    Append(sleeper, TestLine(0, 0));
    CLogFile busy(folder.AsString() + L"log", 2 * LineSize);
    Append(busy, TestLine(1, 0));
    // The file that both had open is log.1 now: its line goes there, and the next one to the new file.
    Append(sleeper, TestLine(0, 1));
    EXPECT_THAT(folder.ReadLines("log.1"), ElementsAre(TestLine(0, 0), TestLine(1, 0), TestLine(0, 1)));
    Append(sleeper, TestLine(0, 2));
    EXPECT_THAT(folder.ReadLines("log"), ElementsAre(TestLine(0, 2)));
    // Its file is moved and then replaced, so it has no name left.
    for (int line = 1; line < 5; ++line)
        Append(busy, TestLine(1, line));
    Append(sleeper, TestLine(0, 3));
    EXPECT_THAT(ReadBoth(folder), testing::Contains(TestLine(0, 3)).Times(1));
}

TEST(CLogFile, DoesNotWaitForAProcessThatRotates)
{
    const ToolsFolder folder;
    CLogFile file(folder.AsString() + L"log", LineSize);
    folder.Write("log", "");
    const int rotating = open(folder.PathOf("log").c_str(), O_RDONLY);
    ASSERT_EQ(flock(rotating, LOCK_EX), 0);
    Append(file, TestLine(0, 0));
    Append(file, TestLine(0, 1));
    EXPECT_FALSE(folder.Has("log.1"));
    close(rotating);
    Append(file, TestLine(0, 2));
    EXPECT_THAT(folder.ReadLines("log.1"), ElementsAre(TestLine(0, 0), TestLine(0, 1), TestLine(0, 2)));
}

TEST(CLogFile, FollowsALinkAndLeavesItInItsPlace)
{
    const ToolsFolder folder;
    folder.Write("target", "");
    std::filesystem::create_symlink(folder.PathOf("target"), folder.PathOf("log"));
    CLogFile file(folder.AsString() + L"log", LineSize);
    for (int line = 0; line < 3; ++line)
        Append(file, TestLine(0, line));
    EXPECT_EQ(folder.ReadLines("target").size(), 3u);
    EXPECT_FALSE(folder.Has("log.1"));
}

TEST(CLogFile, WritesOnceToAFileThatNeverHadAName)
{
    const ToolsFolder folder;
    const std::string path = folder.PathOf("removed");
    std::FILE* const stream = std::fopen(path.c_str(), "w+");
    ASSERT_NE(stream, nullptr);
    std::filesystem::remove(path);
    CLogFile file(ZVFormat(L"/proc/self/fd/%d", fileno(stream)));
    Append(file, "one");
    Append(file, "two");
    char text[64] = {};
    std::rewind(stream);
    EXPECT_EQ(std::fread(text, 1, sizeof text - 1, stream), 8u);
    EXPECT_STREQ(text, "one\ntwo\n");
    std::fclose(stream);
}

TEST(CLogFile, NoticesAfterSomeSecondsWhatChangedAroundIt)
{
    const ToolsFolder folder;
    folder.Write("failed", "in the way");
    CLogFile failed(folder.AsString() + L"failed/log");
    Append(failed, "dropped");
    std::filesystem::remove(folder.PathOf("failed"));
    Append(failed, "dropped too, nobody looks at the disk");
    EXPECT_FALSE(folder.Has("failed"));

    CLogFile removed(folder.AsString() + L"removed/log");
    Append(removed, "gone");
    std::filesystem::remove_all(folder.PathOf("removed"));

    usleep(2'100'000);
    Append(failed, "kept");
    EXPECT_THAT(folder.ReadLines("failed/log"), ElementsAre("kept"));
    Append(removed, "kept");
    EXPECT_THAT(folder.ReadLines("removed/log"), ElementsAre("kept"));
}
}
