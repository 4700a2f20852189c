#include "siblings/tools/locks/CNamedLocks.h"

#include "FakeTools.h"
#include "ToolsFolder.h"
#include "contracts/ZVReleasePointer.h"

#include <gmock/gmock.h>

#include <csignal>
#include <future>

namespace
{
using Lock = ZVReleasePointer<IZVNamedLock>;

class CNamedLocksTest : public testing::Test
{
protected:
    Lock Create(const wchar_t* name) { return Lock(m_locks.CreateLock(name)); }

    ToolsFolder m_folder;
    FakeLogManager m_log;
    CNamedLocks m_locks {m_folder.AsString(), m_log};
};

TEST_F(CNamedLocksTest, ExcludesOthersOfTheSameNameUntilItIsGivenBack)
{
    const auto first = Create(L"../a lock/with: \u00fc");
    const auto second = Create(L"../a lock/with: \u00fc");
    for (int round = 0; round < 2; ++round)
        EXPECT_TRUE(first->Lock(0));
    for (const int32_t milliseconds : {0, 20})
        EXPECT_FALSE(second->Lock(milliseconds));
    EXPECT_TRUE(Create(L"../a lock/with: u")->Lock(0));
    const auto later = std::async(std::launch::async, [&first] { usleep(30'000), first->Unlock(); });
    EXPECT_TRUE(second->Lock(60000));
    later.wait();
    EXPECT_FALSE(first->Lock(0));
    EXPECT_TRUE(m_log.Lines.empty());
}

TEST_F(CNamedLocksTest, IsFreeOnceItsProcessIsKilled)
{
    const auto lock = Create(L"shared");
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0)
    {
        Create(L"shared").release()->Lock(10000);
        pause();
        _exit(1);
    }
    for (int tries = 0; tries < 10000 && lock->Lock(0); ++tries, usleep(1000))
        lock->Unlock();
    EXPECT_FALSE(lock->Lock(0));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(lock->Lock(0));
}

TEST_F(CNamedLocksTest, LogsWhyNoLockCanBeMade)
{
    m_folder.Write("Locks", "a file where the folder should be");
    EXPECT_FALSE(Create(L"name")->Lock(1000));
    EXPECT_THAT(m_log.Lines, testing::ElementsAre(testing::HasSubstr("Locks/name.lock")));
    EXPECT_FALSE(Lock(CNamedLocks(ZVString(), m_log).CreateLock(L"name"))->Lock(0));
}
}
