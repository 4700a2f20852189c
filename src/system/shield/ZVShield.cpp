#include "system/shield/ZVShield.h"

#include "system/library/ZVNativeBytes.h"
#include "system/log/ZVLog.h"
#include "system/shield/ZVCallFilter.h"
#include "system/shield/ZVLandlock.h"
#include "system/shield/ZVMemoryLimit.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVShield::Lock"};

struct ModeName
{
    const wchar_t* Name;
    ZVShield::Mode Mode;
};

constexpr ModeName ModeNames[] = {
    {L"",        ZVShield::Mode::BestEffort},
    {L"off",     ZVShield::Mode::Off       },
    {L"require", ZVShield::Mode::Required  },
};

int ReasonUnless(bool isDone)
{
    return isDone ? 0 : errno;
}

// The lock on files holds for the calling thread and those that it starts. A process of one thread is told to leave its threads, which
// is nothing to do; with more it fails.
int CheckThreads(const ZVShieldRules&)
{
    return unshare(CLONE_THREAD) == 0 ? 0 : EBUSY;
}

// A file of a crashed process would hold what it had read.
int ForbidCoreFiles(const ZVShieldRules&)
{
    const rlimit none {0, 0};
    return ReasonUnless(setrlimit(RLIMIT_CORE, &none) == 0);
}

int LimitMemory(const ZVShieldRules& rules)
{
    return ReasonUnless(ZVMemoryLimit::Set(rules.MemoryLimit));
}

// No program that is run from now on gets more rights than its caller, whatever its file says. Without this an ordinary user may
// not lock anything.
int KeepRights(const ZVShieldRules&)
{
    return ReasonUnless(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0);
}

struct Step
{
    const char* Failure;
    // Returns 0, or the system's reason.
    int (*Take)(const ZVShieldRules& rules);
};

constexpr Step Steps[] = {
    {"a thread is already running",          CheckThreads         },
    {"core files cannot be forbidden",       ForbidCoreFiles      },
    {"the memory cannot be limited",         LimitMemory          },
    {"programs may gain rights",             KeepRights           },
    {"the kernel does not guard the files",  ZVLandlock::Restrict },
    {"the kernel does not filter the calls", ZVCallFilter::Install},
};
}

ZVShield::Mode ZVShield::ReadMode()
{
    const ZVString text = ZVNativeBytes::ToText(getenv("ZV_SHIELD"));
    for (const ModeName& name : ModeNames)
        if (text == name.Name)
            return name.Mode;
    Source.Log("ZV_SHIELD is neither 'off' nor 'require', so it does not count: %s", text);
    return Mode::BestEffort;
}

bool ZVShield::Lock(const ZVShieldRules& rules, Mode mode)
{
    if (mode == Mode::Off)
        return true;
    bool isWhole = true;
    for (const Step& step : Steps)
    {
        const int error = step.Take(rules);
        if (error == 0)
            continue;
        isWhole = false;
        Source.Log("The lock is not whole, since %s: %s", step.Failure, strerror(error));
    }
    return isWhole || mode != Mode::Required;
}
