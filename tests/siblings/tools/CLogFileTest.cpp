#include "siblings/tools/log/CLogFile.h"

#include "ToolsFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>

namespace
{
constexpr int ProcessCount = 4;
constexpr int LineCount = 5000;

// Lines of 40 bytes with their breaks, so that a test knows when the file is full.
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
    // No rotation; one; so many that most lines go with a file that is dropped.
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
        EXPECT_TRUE(rotationSize < AllSize ? oldSize >= rotationSize : oldSize == 0) << oldSize;
        std::vector<std::string> lines = ReadBoth(folder);
        // Sorted by "process N", but by nothing else.
        std::ranges::stable_sort(lines, {}, [](const std::string& line) { return line.substr(0, 9); });
        EXPECT_TRUE(std::ranges::is_sorted(lines, std::ranges::less_equal {})) << "lines out of order, or twice";
        EXPECT_THAT(lines, testing::Each(testing::MatchesRegex("process [0-3] line 1[0-9]{4} \\.{18}")));
        EXPECT_TRUE(lines.size() == ProcessCount * LineCount || rotationSize < AllSize / 2) << "lines are lost";
    }
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
    Append(sleeper, TestLine(0, 2));
    EXPECT_EQ(folder.ReadLines("log.1").size(), 3u);
    EXPECT_THAT(folder.ReadLines("log"), testing::ElementsAre(TestLine(0, 2)));
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
    Append(file, TestLine(0, 1));
    EXPECT_FALSE(folder.Has("log.1"));
    close(rotating);
    Append(file, "two");
    EXPECT_EQ(folder.ReadLines("log.1").size(), 2u);
}

TEST(CLogFile, WritesOnceToALinkWhetherItsTargetHasANameOrNot)
{
    const ToolsFolder folder;
    folder.Write("target", "");
    std::filesystem::create_symlink(folder.PathOf("target"), folder.PathOf("log"));
    const int target = open(folder.PathOf("target").c_str(), O_RDONLY);
    CLogFile named(folder.AsString() + L"log", LineSize);
    CLogFile nameless(ZVFormat(L"/proc/self/fd/%d", target), LineSize);
    for (CLogFile* file : {&named, &nameless})
    {
        Append(*file, TestLine(0, 0));
        Append(*file, TestLine(0, 1));
        std::filesystem::remove(folder.PathOf("target"));
    }
    EXPECT_FALSE(folder.Has("log.1"));
    EXPECT_EQ(lseek(target, 0, SEEK_END), 4 * LineSize);
    close(target);
}

TEST(CLogFile, ALineThatWasCutDoesNotRunIntoTheNext)
{
    const ToolsFolder folder;
    ASSERT_TRUE(RunProcesses(1,
                             [&](int)
                             {
                                 signal(SIGXFSZ, SIG_IGN);
                                 CLogFile file(folder.AsString() + L"log");
                                 // The second cut takes away nothing but the line break.
                                 for (const rlim_t limit : {rlim_t {2}, rlim_t {8}, rlim_t {100}})
                                 {
                                     const rlimit size {limit, RLIM_INFINITY};
                                     if (setrlimit(RLIMIT_FSIZE, &size) != 0)
                                         return false;
                                     Append(file, "12345");
                                 }
                                 return true;
                             }));
    EXPECT_EQ(folder.Read("log"), "12\n12345\n12345\n");
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
    for (CLogFile* file : {&failed, &removed})
        Append(*file, "kept");
    EXPECT_EQ(folder.Read("failed/log") + folder.Read("removed/log"), "kept\nkept\n");
}
}
