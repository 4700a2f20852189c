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
// Calls the function on a thread that may not raise its priority, and that passes this on to the threads it starts.
template <class Function>
void RunWithoutPriorityRights(const Function& function)
{
    for (const auto resource : {RLIMIT_NICE, RLIMIT_RTPRIO})
    {
        rlimit limits = {};
        getrlimit(resource, &limits);
        limits.rlim_cur = 0;
        setrlimit(resource, &limits);
    }
    const auto drop = [&function]
    {
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct capabilities[2] = {};
        syscall(SYS_capget, &header, capabilities);
        capabilities[0].effective &= ~(1u << CAP_SYS_NICE);
        syscall(SYS_capset, &header, capabilities);
        function();
    };
    std::thread(drop).join();
}

struct Row
{
    int32_t Level;
    int MayRaise;
    int MayNotRaise;
    int Policy;
    int StaticPriority;
};

constexpr Row Rows[] = {
    {-15, 0,   0,  SCHED_IDLE,  0},
    {-2,  18,  17, SCHED_OTHER, 0},
    {-1,  10,  15, SCHED_OTHER, 0},
    {1,   -10, 5,  SCHED_OTHER, 0},
    {2,   -17, 2,  SCHED_OTHER, 0},
    {15,  -19, 0,  SCHED_RR,    1},
    {0,   0,   10, SCHED_OTHER, 0},
    {3,   0,   10, SCHED_OTHER, 0},
    {-16, 0,   10, SCHED_OTHER, 0},
};

// Each level on a thread of its own, since none could come back from a higher nice value.
void ExpectLevels(bool mayRaise)
{
    const auto expectLevel = [mayRaise](const Row& row)
    {
        SCOPED_TRACE(row.Level);
        EXPECT_EQ(ZVThreadPriority::SchedulingOf(row.Level).Policy, row.Policy);
        EXPECT_EQ(ZVThreadPriority::SchedulingOf(row.Level).StaticPriority, row.StaticPriority);
        EXPECT_TRUE(ZVThreadPriority::ApplyToCaller(row.Level));
        EXPECT_EQ(getpriority(PRIO_PROCESS, 0), mayRaise ? row.MayRaise : row.MayNotRaise);
        EXPECT_EQ(sched_getscheduler(0) == SCHED_IDLE, row.Policy == SCHED_IDLE);
    };
    for (const Row& row : Rows)
        std::thread(expectLevel, row).join();
}

TEST(ZVThreadPriority, AppliesTheValuesOfTheLevel)
{
    if (getpriority(PRIO_PROCESS, 0) != 0)
        GTEST_SKIP() << "started with a nice value of its own";
    bool mayRaise = false;
    std::thread([&mayRaise] { mayRaise = setpriority(PRIO_PROCESS, 0, -19) == 0; }).join();
    ExpectLevels(mayRaise);
    RunWithoutPriorityRights([] { ExpectLevels(false); });
}

TEST(ZVThreadPriority, GivesAThreadEvenWithoutTheRightToItsScheduling)
{
    RunWithoutPriorityRights(
        []
        {
            ZVThread thread;
            ASSERT_TRUE(thread.Start(0, false, ZVThreadPriority::TimeCritical));
            int policy = -1;
            sched_param parameter {};
            pthread_getschedparam(static_cast<pthread_t>(thread.GetHandle()), &policy, &parameter);
            EXPECT_EQ(policy, SCHED_OTHER);
        });
}
}
