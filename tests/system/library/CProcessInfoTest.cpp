#include "system/library/CProcessInfo.h"

#include "FakeTools.h"
#include "core/ZVToolsPointer.h"
#include "system/library/ZVProcessTime.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using std::filesystem::exists;

std::string GetBlockPath(pid_t processId)
{
    return "/dev/shm/Zivora Process v33 (" + std::to_string(processId) + ")";
}

void WriteFile(const std::string& path, const void* data, size_t size, mode_t mode = 0600)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    EXPECT_EQ(write(file, data, size), static_cast<ssize_t>(size));
    fchmod(file, mode);
    close(file);
}

// Runs a function in a child process and gives the child's id, negative when the function gave false.
pid_t RunInChild(const std::function<bool()>& function)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(function() ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? child : -child;
}

class CProcessInfoTest : public testing::Test
{
protected:
    // Another test of this process may have opened the process's own description.
    CProcessInfoTest() { unlink(m_path.c_str()); }
    ~CProcessInfoTest() override { unlink(m_path.c_str()); }

    const std::string m_path = GetBlockPath(getpid());
};

TEST_F(CProcessInfoTest, AllCopiesInAProcessSeeOneBlockUntilItsMakerRemovesIt)
{
    CProcessInfo program;
    struct stat status
    {
    };
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_TRUE(status.st_size == 83032 && (status.st_mode & 07777) == 0600);
    EXPECT_LE(status.st_blocks * 512, 5 * 4096) << "pages that hold nothing are not allocated";
    {
        CProcessInfo library;
        EXPECT_TRUE(program.SetApplicationDataPath(L"/data/"));
        EXPECT_FALSE(program.SetApplicationDataPath(std::wstring(4096, L'x').c_str())) << "the place holds 4095 characters";
        EXPECT_STREQ(library.GetApplicationDataPath(), L"/data/");
        program.MarkStarted();
        EXPECT_TRUE(library.IsStarted());
        EXPECT_TRUE(program.TakeNextAttachValue() == 1 && library.TakeNextAttachValue() == 2);
    }
    RunInChild([&] { return program.Remove(), true; });
    EXPECT_TRUE(exists(m_path)) << "neither another copy nor a child of the process removes it";
    program.Remove();
    EXPECT_FALSE(exists(m_path));
    EXPECT_EQ(program.TakeNextAttachValue(), 3) << "what is mapped stays";
}

TEST_F(CProcessInfoTest, ABlockThatAnotherProcessLeftIsReplaced)
{
    CProcessBlock good {};
    good.State = CProcessBlock::Content::Filled;
    good.ProcessId = getpid();
    good.CreationTime = ZVProcessTime::GetNow();
    good.AttachCounter = 40;
    const auto expectNext =
        [&](const char* name, int32_t value, const auto& change, size_t size = sizeof good, mode_t mode = 0600)
    {
        CProcessBlock block = good;
        change(block);
        WriteFile(m_path, &block, size, mode);
        CProcessInfo info;
        EXPECT_TRUE(info.IsShared() && info.TakeNextAttachValue() == value) << name;
    };
    const auto nothing = [](CProcessBlock&) {};
    expectNext("of this process", 41, nothing);
    expectNext("cut short", 1, nothing, 5000);
    expectNext("open to others", 1, nothing, sizeof good, 0666);
    expectNext("too old", 1, [](CProcessBlock& block) { block.CreationTime /= 2; });
    expectNext("of another process", 1, [](CProcessBlock& block) { ++block.ProcessId; });
    expectNext("not filled", 1, [](CProcessBlock& block) { block.State = CProcessBlock::Content::New; });
    expectNext("path without an end", 1, [](CProcessBlock& block) { wmemset(block.InstallPath, L'x', 4096); });
}

TEST_F(CProcessInfoTest, BesideABlockOfAnotherUserTheDescriptionIsPrivate)
{
    WriteFile(m_path, std::string(83032, '\1').data(), 83032);
    if (chown(m_path.c_str(), getuid() + 1, getgid()) != 0)
        GTEST_SKIP() << "only root can make a file of another user";
    FakeTools tools;
    CProcessInfo info;
    EXPECT_TRUE(!info.IsShared() && ZVString(info.GetInstallPath()).EndsWith(L'/'));
    EXPECT_EQ(unlink(m_path.c_str()), 0) << "what is not ours stays";
    g_pZVTools = &tools;
    info.LogStorage();
    g_pZVTools = nullptr;
    EXPECT_EQ(tools.Manager.Lines.at(0).find("1|CProcessInfo|The process information is not shared with the libraries: "), 0u);
}

TEST_F(CProcessInfoTest, NoRoomForTheBlockDoesNotEndTheProcess)
{
    const pid_t child = RunInChild(
        []
        {
            // The limit on the size of files holds for shared memory too.
            signal(SIGXFSZ, SIG_IGN);
            const rlimit limit {4096, 4096};
            setrlimit(RLIMIT_FSIZE, &limit);
            CProcessInfo info;
            return !info.IsShared() && info.TakeNextAttachValue() > 0;
        });
    EXPECT_GT(child, 0);
    EXPECT_FALSE(exists(GetBlockPath(child)));
}

TEST_F(CProcessInfoTest, AStartRemovesTheBlocksOfDeadProcessesAndNothingElse)
{
    const pid_t dead = RunInChild([] { return true; });
    const std::string left = GetBlockPath(dead);
    const std::string otherVersion = "/dev/shm/Zivora Process v34 (" + std::to_string(dead) + ")";
    const std::string kept[] = {GetBlockPath(getppid()), left + " ", otherVersion, GetBlockPath(-dead)};
    for (const std::string& path : kept)
        WriteFile(path, "x", 1);
    WriteFile(left, "x", 1);
    const CProcessInfo info;
    EXPECT_FALSE(exists(left));
    for (const std::string& path : kept)
        EXPECT_EQ(unlink(path.c_str()), 0) << path;
}
}
