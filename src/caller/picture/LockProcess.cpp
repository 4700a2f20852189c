#include "caller/picture/LockProcess.h"

#include "caller/picture/CPicture.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace
{
#if defined(__x86_64__)
constexpr uint32_t Machine = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr uint32_t Machine = AUDIT_ARCH_AARCH64;
#else
constexpr uint32_t Machine = 0;
#endif

#if defined(__SANITIZE_ADDRESS__)
// A sanitizer reserves addresses for its notes on all memory there can be.
constexpr rlim_t AddressLimit = RLIM_INFINITY;
#else
// The largest picture of a format, 16383 pixels wide and high, and a smaller one of it.
constexpr rlim_t AddressLimit = rlim_t {4} << 30;
#endif

// What is limited, in bytes or seconds. The largest picture takes about a minute.
constexpr std::pair<__rlimit_resource, rlim_t> Limits[] = {
    {RLIMIT_AS,    AddressLimit      },
    {RLIMIT_CPU,   300               },
    {RLIMIT_FSIZE, MaximumPictureSize},
    {RLIMIT_CORE,  0                 },
};

// The calls that are left.
constexpr int AllowedCalls[] = {
    // the picture that is made, and a sentence about what went wrong
    SYS_write,
    // the end
    SYS_exit_group,
    // memory
    SYS_brk,
    SYS_mmap,
    SYS_munmap,
    SYS_mremap,
    SYS_mprotect,
    SYS_madvise,
    // what the C library does when it takes its first memory, waits for a lock of its own, and gives up
    SYS_getrandom,
    SYS_futex,
    SYS_sched_yield,
    SYS_rt_sigprocmask,
#if defined(__SANITIZE_ADDRESS__)
    // what a sanitizer asks before a jump out of functions and before the end
    SYS_sigaltstack,
#endif
};

constexpr sock_filter Load(size_t offset)
{
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset));
}

// Goes on with the next instruction if the loaded number is this one, and otherwise with the one after it, or the other way round.
constexpr sock_filter NextIf(uint32_t number)
{
    return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1);
}
constexpr sock_filter NextUnless(uint32_t number)
{
    return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 1, 0);
}

constexpr sock_filter Allow = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
constexpr sock_filter Refuse = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM);

constexpr auto MakeFilter()
{
    std::array<sock_filter, 4 + 2 * std::size(AllowedCalls) + 1> filter {};
    auto next = filter.begin();
    // The numbers mean other calls in programs of another machine, which this one may run too.
    for (const sock_filter& instruction :
         {Load(offsetof(seccomp_data, arch)), NextUnless(Machine), Refuse, Load(offsetof(seccomp_data, nr))})
        *next++ = instruction;
    for (const int call : AllowedCalls)
    {
        *next++ = NextIf(static_cast<uint32_t>(call));
        *next++ = Allow;
    }
    *next = Refuse;
    return filter;
}

constexpr auto Filter = MakeFilter();

// Returns 0 or the reason of the system.
int TryToLock()
{
    if (Machine == 0)
        return ENOTSUP;
    for (const auto& [resource, most] : Limits)
    {
        rlimit limit {};
        // Nobody may raise a limit that is lower already.
        if (getrlimit(resource, &limit) != 0)
            return errno;
        limit.rlim_max = std::min(limit.rlim_max, most);
        limit.rlim_cur = std::min(limit.rlim_cur, most);
        if (setrlimit(resource, &limit) != 0)
            return errno;
    }
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return errno;
    const sock_fprog program {static_cast<unsigned short>(Filter.size()), const_cast<sock_filter*>(Filter.data())};
    // A positive number is that of a thread which could not follow.
    const long result = syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program);
    return result > 0 ? EBUSY : result == 0 ? 0 : errno;
}
}

void LockProcess()
{
    if (const int error = TryToLock(); error != 0)
        throw std::runtime_error(
            std::string("no picture is read, since the system does not let the program lock itself in before: ") +
            strerror(error));
}
