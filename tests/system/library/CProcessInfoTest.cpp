#include "system/library/CProcessInfo.h"

#include "system/library/ZVProcessTime.h"
#include "system/log/ToolsFixture.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
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

// Runs a function in a child process and returns the id that the child had.
pid_t RunInChild(const std::function<void()>& function)
{
    const pid_t child = fork();
    if (child == 0)
    {
        function();
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    return child;
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
    EXPECT_EQ(status.st_size, 83032);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
    EXPECT_LE(status.st_blocks * 512, 5 * 4096) << "pages that hold nothing are not allocated";
    {
        CProcessInfo library;
        EXPECT_TRUE(program.SetApplicationDataPath(L"/data/"));
        EXPECT_FALSE(program.SetApplicationDataPath(std::wstring(4096, L'x').c_str())) << "the place holds 4095 characters";
        EXPECT_STREQ(library.GetApplicationDataPath(), L"/data/");
        program.MarkStarted();
        EXPECT_TRUE(library.IsStarted());
        EXPECT_EQ(program.TakeNextAttachValue(), 1);
        EXPECT_EQ(library.TakeNextAttachValue(), 2);
    }
    RunInChild([&program] { program.Remove(); });
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
    CProcessBlock older = good;
    older.CreationTime /= 2;
    EXPECT_EQ(getNext(older), 1) << "made before this process";
    CProcessBlock endless = good;
    wmemset(endless.InstallPath, L'x', 4096);
    EXPECT_EQ(getNext(endless), 1) << "a path without an end";
}

TEST_F(CProcessInfoTest, AStartRemovesTheBlocksOfDeadProcessesAndNothingElse)
{
    const pid_t dead = RunInChild([] {});
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
