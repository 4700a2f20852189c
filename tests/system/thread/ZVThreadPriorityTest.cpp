#include "system/thread/ZVThreadPriority.h"

#include "PriorityRights.h"

#include <gtest/gtest.h>

#include <sched.h>

namespace
{
struct Row
{
    int32_t Level;
    int MayRaise;
    int MayNotRaise;
    int Policy;
};

constexpr Row Rows[] = {
    {-15, 0,   0,  SCHED_IDLE },
    {-2,  18,  17, SCHED_OTHER},
    {-1,  10,  15, SCHED_OTHER},
    {1,   -10, 5,  SCHED_OTHER},
    {2,   -17, 2,  SCHED_OTHER},
    {15,  -19, 0,  SCHED_RR   },
    {0,   0,   10, SCHED_OTHER},
    {3,   0,   10, SCHED_OTHER},
    {-16, 0,   10, SCHED_OTHER},
};

int NiceValueOfCaller()
{
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

// Each level on a thread of its own, since none could come back from a higher nice value.
void ExpectLevels(bool mayRaise)
{
    for (const Row& row : Rows)
        std::thread(
            [&row, mayRaise]
            {
                SCOPED_TRACE(row.Level);
                EXPECT_EQ(ZVThreadPriority::SchedulingOf(row.Level).Policy, row.Policy);
                EXPECT_TRUE(ZVThreadPriority::ApplyToCaller(row.Level));
                EXPECT_EQ(NiceValueOfCaller(), mayRaise ? row.MayRaise : row.MayNotRaise);
                EXPECT_EQ(sched_getscheduler(0) == SCHED_IDLE, row.Policy == SCHED_IDLE);
            })
            .join();
}

TEST(ZVThreadPriority, AppliesTheValuesOfTheLevel)
{
    if (NiceValueOfCaller() != 0)
        GTEST_SKIP() << "started with a nice value of its own";
    bool mayRaise = false;
    std::thread([&mayRaise] { mayRaise = setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), -19) == 0; }).join();
    ExpectLevels(mayRaise);
    ZVRunWithoutPriorityRights([] { ExpectLevels(false); });
}
}
