#include "system/thread/ZVThreadPriority.h"

#include "system/thread/ZVThread.h"

#include <gtest/gtest.h>

#include <thread>

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
// Takes from the calling thread, and from those that it starts, the right to raise priorities.
void DropPriorityRights()
{
    const rlimit none {};
    setrlimit(RLIMIT_NICE, &none);
    setrlimit(RLIMIT_RTPRIO, &none);
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct capabilities[2] = {};
    syscall(SYS_capget, &header, capabilities);
    capabilities[0].effective &= ~(1u << CAP_SYS_NICE);
    syscall(SYS_capset, &header, capabilities);
}

TEST(ZVThreadPriority, AppliesTheValuesOfTheLevel)
{
    // The level, the nice values with and without the right to raise priorities, and the policy.
    constexpr int rows[][4] = {
        {-15, 0,   0,  SCHED_IDLE },
        {-1,  10,  15, SCHED_OTHER},
        {15,  -19, 0,  SCHED_RR   },
        {3,   0,   10, SCHED_OTHER},
    };
    if (getpriority(PRIO_PROCESS, 0) != 0)
        GTEST_SKIP() << "started with a nice value of its own";
    // Each level on a thread of its own, since none could come back from a higher nice value.
    const auto expectLevel = [](const int(&row)[4], bool keepsRights)
    {
        SCOPED_TRACE(row[0]);
        if (!keepsRights)
            DropPriorityRights();
        const bool mayRaise = setpriority(PRIO_PROCESS, 0, -19) == 0 && setpriority(PRIO_PROCESS, 0, 0) == 0;
        const auto [policy, priority] = ZVThreadPriority::SchedulingOf(row[0]);
        EXPECT_TRUE(policy == row[3] && priority == (policy == SCHED_RR) && ZVThreadPriority::ApplyToCaller(row[0]));
        EXPECT_EQ(getpriority(PRIO_PROCESS, 0), mayRaise ? row[1] : row[2]);
        EXPECT_EQ(sched_getscheduler(0) == SCHED_IDLE, row[3] == SCHED_IDLE);
    };
    for (const bool keepsRights : {true, false})
        for (const auto& row : rows)
            std::thread([&] { expectLevel(row, keepsRights); }).join();
}

TEST(ZVThreadPriority, GivesAThreadEvenWithoutTheRightToItsScheduling)
{
    const auto startThread = []
    {
        DropPriorityRights();
        ZVThread thread;
        ASSERT_TRUE(thread.Start(0, false, ZVThreadPriority::TimeCritical));
        int policy = -1;
        sched_param parameter {};
        pthread_getschedparam(static_cast<pthread_t>(thread.GetHandle()), &policy, &parameter);
        EXPECT_EQ(policy, SCHED_OTHER);
    };
    std::thread(startThread).join();
}
}
