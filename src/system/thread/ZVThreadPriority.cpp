#include "system/thread/ZVThreadPriority.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{
struct SchedulingRow
{
    int32_t Level;
    ZVThreadPriority::Scheduling Scheduling;
};

// Threads of all other levels are ordinary ones that differ in their nice value.
constexpr ZVThreadPriority::Scheduling OrdinaryScheduling = {SCHED_OTHER, 0};
constexpr SchedulingRow Schedulings[] = {
    {ZVThreadPriority::Idle,         {SCHED_IDLE, 0}},
    {ZVThreadPriority::TimeCritical, {SCHED_RR, 1}  },
};

struct NiceRow
{
    int32_t Level;
    int MayRaise;
    int MayNotRaise;
};

// A process that may not raise priorities can only go up the nice scale, so its levels are spread over the values from 0 up.
constexpr NiceRow NormalNice = {ZVThreadPriority::Normal, 0, 10};
constexpr NiceRow NiceValues[] = {
    {ZVThreadPriority::Lowest,       18,  17},
    {ZVThreadPriority::BelowNormal,  10,  15},
    {ZVThreadPriority::AboveNormal,  -10, 5 },
    {ZVThreadPriority::Highest,      -17, 2 },
    {ZVThreadPriority::TimeCritical, -19, 0 },
};

// On Linux a nice value belongs to one kernel thread.
id_t CallerID()
{
    return static_cast<id_t>(gettid());
}

bool SetNiceValue(int value)
{
    return setpriority(PRIO_PROCESS, CallerID(), value) == 0;
}

// No system call tells whether a priority may be raised, by a capability or by a limit, so it is tried.
bool MayRaise()
{
    constexpr int Probe = -19;
    const int present = getpriority(PRIO_PROCESS, CallerID());
    if (!SetNiceValue(Probe))
        return false;
    SetNiceValue(present);
    return true;
}
}

ZVThreadPriority::Scheduling ZVThreadPriority::SchedulingOf(int32_t level)
{
    for (const SchedulingRow& row : Schedulings)
        if (row.Level == level)
            return row.Scheduling;
    return OrdinaryScheduling;
}

int ZVThreadPriority::NiceValueOf(int32_t level, bool mayRaise)
{
    for (const NiceRow& row : NiceValues)
        if (row.Level == level)
            return mayRaise ? row.MayRaise : row.MayNotRaise;
    return mayRaise ? NormalNice.MayRaise : NormalNice.MayNotRaise;
}

bool ZVThreadPriority::ApplyToCaller(int32_t level)
{
    if (level == Idle)
    {
        const sched_param parameter {};
        return pthread_setschedparam(pthread_self(), SCHED_IDLE, &parameter) == 0;
    }
    return SetNiceValue(NiceValueOf(level, MayRaise()));
}
