#include "system/library/CProcessInfo.h"

#include "system/library/ZVProcessTime.h"
#include "system/log/ToolsFixture.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
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
    std::ofstream(path, std::ios::binary).write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    EXPECT_EQ(chmod(path.c_str(), mode), 0);
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

class CProcessInfoTest : public ToolsFixture
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
    struct stat status;
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_TRUE(status.st_size == 83032 && (status.st_mode & 07777) == 0600);
    EXPECT_LE(status.st_blocks * 512, 5 * 4096) << "pages that hold nothing are not allocated";
    {
        CProcessInfo library;
        EXPECT_TRUE(program.SetApplicationDataPath(L"/data/"));
        EXPECT_FALSE(program.SetApplicationDataPath(std::wstring(4096, L'x').c_str())) << "the place holds 4095 characters";
        EXPECT_STREQ(library.GetApplicationDataPath(), L"/data/");
        program.MarkStarted();
        EXPECT_TRUE(library.IsStarted() && program.TakeNextAttachValue() == 1 && library.TakeNextAttachValue() == 2);
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
    const auto getNext = [&](const CProcessBlock& block, size_t size = sizeof good, mode_t mode = 0600)
    {
        WriteFile(m_path, &block, size, mode);
        CProcessInfo info;
        return info.IsShared() ? info.TakeNextAttachValue() : -1;
    };
    EXPECT_EQ(getNext(good), 41);
    EXPECT_EQ(getNext(good, 5000), 1) << "cut short";
    EXPECT_EQ(getNext(good, sizeof good, 0666), 1) << "open to others";
    CProcessBlock bad[] = {good, good, good, good};
    bad[0].CreationTime /= 2;
    ++bad[1].ProcessId;
    bad[2].State = CProcessBlock::Content::New;
    wmemset(bad[3].InstallPath, L'x', 4096);
    for (const CProcessBlock& block : bad)
        EXPECT_EQ(getNext(block), 1) << &block - bad;
}

TEST_F(CProcessInfoTest, BesideABlockOfAnotherUserTheDescriptionIsPrivate)
{
    WriteFile(m_path, std::string(83032, '\1').data(), 83032);
    if (chown(m_path.c_str(), getuid() + 1, getgid()) != 0)
        GTEST_SKIP() << "only root can make a file of another user";
    CProcessInfo info;
    EXPECT_TRUE(!info.IsShared() && ZVString(info.GetInstallPath()).EndsWith(L'/'));
    EXPECT_EQ(unlink(m_path.c_str()), 0) << "what is not ours stays";
    info.LogStorage();
    EXPECT_THAT(m_tools.Manager.Lines.back(), testing::StartsWith("1|CProcessInfo|The process information is not shared "));
}

TEST_F(CProcessInfoTest, NoRoomForTheBlockDoesNotEndTheProcess)
{
    const auto makeLimited = []
    {
        // The limit on the size of files holds for shared memory too.
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit {4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        CProcessInfo info;
        return !info.IsShared() && info.TakeNextAttachValue() > 0;
    };
    const pid_t child = RunInChild(makeLimited);
    EXPECT_GT(child, 0);
    EXPECT_FALSE(exists(GetBlockPath(child)));
}

TEST_F(CProcessInfoTest, AStartRemovesTheBlocksOfDeadProcessesAndNothingElse)
{
    const pid_t dead = RunInChild([] { return true; });
    const std::string left = GetBlockPath(dead);
    const std::string kept[] = {GetBlockPath(getppid()), left + " ", GetBlockPath(-dead),
                                "/dev/shm/Zivora Process v34 (" + std::to_string(dead) + ")"};
    WriteFile(left, "x", 1);
    for (const std::string& path : kept)
        WriteFile(path, "x", 1);
    const CProcessInfo info;
    EXPECT_FALSE(exists(left));
    for (const std::string& path : kept)
        EXPECT_EQ(unlink(path.c_str()), 0) << path;
}
}
