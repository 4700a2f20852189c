#include "siblings/tools/locks/CNamedLocks.h"

#include "siblings/tools/ToolsFolder.h"
#include "FakeTools.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <thread>

namespace
{
struct Release
{
    void operator()(IZVNamedLock* lock) const { lock->Release(); }
};

using LockPointer = std::unique_ptr<IZVNamedLock, Release>;

class CNamedLocksTest : public testing::Test
{
protected:
    LockPointer Create(const wchar_t* name) { return LockPointer(m_locks.CreateLock(name)); }

    ToolsFolder m_folder;
    FakeLogManager m_log;
    CNamedLocks m_locks {m_folder.AsString(), m_log};
};

TEST_F(CNamedLocksTest, ExcludesOthersOfTheSameNameUntilItIsGivenBack)
{
    const LockPointer first = Create(L"../a lock/with: ü");
    const LockPointer second = Create(L"../a lock/with: ü");
    const LockPointer other = Create(L"../a lock/with: u");
    EXPECT_TRUE(first->Lock(0));
    EXPECT_TRUE(first->Lock(0));
    EXPECT_FALSE(second->Lock(0));
    EXPECT_FALSE(second->Lock(20));
    EXPECT_TRUE(other->Lock(0));
    std::thread holder([&first] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        first->Unlock();
    });
    EXPECT_TRUE(second->Lock(60000));
    holder.join();
    EXPECT_FALSE(first->Lock(0));
    EXPECT_TRUE(m_log.Lines.empty());
}

TEST_F(CNamedLocksTest, IsFreeOnceItsProcessIsKilled)
{
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0)
    {
        const LockPointer lock = Create(L"shared");
        const char isLocked = lock->Lock(0) ? 'y' : 'n';
        if (write(ready[1], &isLocked, 1) == 1)
            pause();
        _exit(1);
    }
    char isLocked = 'n';
    ASSERT_EQ(read(ready[0], &isLocked, 1), 1);
    ASSERT_EQ(isLocked, 'y');
    const LockPointer lock = Create(L"shared");
    EXPECT_FALSE(lock->Lock(0));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(lock->Lock(0));
    close(ready[0]);
    close(ready[1]);
}

TEST_F(CNamedLocksTest, LogsWhyNoLockCanBeMade)
{
    m_folder.Write("Locks", "a file where the folder should be");
    EXPECT_FALSE(Create(L"name")->Lock(1000));
    ASSERT_EQ(m_log.Lines.size(), 1u);
    EXPECT_NE(m_log.Lines[0].find("Locks/name.lock"), std::string::npos) << m_log.Lines[0];

    CNamedLocks nowhere(ZVString(), m_log);
    EXPECT_FALSE(LockPointer(nowhere.CreateLock(L"name"))->Lock(0));
}
}
