#pragma once

#include <algorithm>
#include <array>
#include <asm/ioctls.h>
#include <cerrno>
#include <cstdint>
#include <sched.h>
#include <span>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>

// Which system calls a locked process is refused. Several rows of one call are several reasons.
namespace ZVRefusedCalls
{
// What of an argument is looked at, of which all but an address are the lower 32 bits: the kernel itself takes no more of these.
enum class Test : uint8_t
{
    None,            // the call is refused whatever its arguments are
    Has,             // all bits of Value
    Lacks,           // not all bits of Value
    Equals,          // Value
    Differs,         // anything but Value
    IsOtherProcess,  // anything but the number of the own process
    IsOtherFamily,   // anything but one of InternetFamilies
    IsAddress,       // anything but a null pointer
};

// What a process may be meant to do, and then is not refused.
enum class Unless : uint8_t
{
    Never,
    HasSockets,
    HasInternet,
    RunsPrograms,
    IsSanitized,  // the search for leaks stops its own process by a tracer
    SanitizedOrPrograms,
};

struct Row
{
    int Call;
    Unless Lifted = Unless::Never;
    uint8_t Argument = 0;
    Test Kind = Test::None;
    uint32_t Value = 0;
};

// The search for the names of hosts asks by netlink which addresses the machine has.
inline constexpr uint32_t InternetFamilies[] = {AF_UNIX, AF_INET, AF_INET6, AF_NETLINK};

// Calls that the headers of older systems do not name; on all machines they have the same numbers.
inline constexpr int MemorySecret = 447;
inline constexpr int ProcessRelease = 448;
inline constexpr int ChangeModeAt2 = 452;
inline constexpr int SetAttributeAt = 463;
inline constexpr int RemoveAttributeAt = 466;
inline constexpr int OpenTreeAttributes = 467;
inline constexpr int SetFileAttributes = 469;

// clang-format off
inline constexpr Row UnsortedRows[] = {
    // Other processes. Signals to oneself are how abort() works.
    {SYS_ptrace, Unless::IsSanitized},
    {SYS_process_vm_readv}, {SYS_process_vm_writev}, {SYS_kcmp}, {SYS_process_madvise}, {ProcessRelease},
    {SYS_pidfd_open}, {SYS_pidfd_getfd}, {SYS_pidfd_send_signal},
    {SYS_kill,              Unless::Never, 0, Test::IsOtherProcess},
    {SYS_tgkill,            Unless::Never, 0, Test::IsOtherProcess},
    {SYS_rt_sigqueueinfo,   Unless::Never, 0, Test::IsOtherProcess},
    {SYS_rt_tgsigqueueinfo, Unless::Never, 0, Test::IsOtherProcess},
    {SYS_tkill},
    {SYS_prlimit64,         Unless::Never, 0, Test::Differs, 0},
    {SYS_migrate_pages},
    {SYS_move_pages,        Unless::Never, 0, Test::Differs, 0},

    // Programs and processes of its own.
    {SYS_execve, Unless::RunsPrograms}, {SYS_execveat},
    {SYS_clone,             Unless::SanitizedOrPrograms, 0, Test::Lacks, CLONE_THREAD},

    // Sockets. Nothing here waits to be called.
    {SYS_socket,     Unless::HasSockets},
    {SYS_socket,     Unless::HasInternet, 0, Test::Differs, AF_UNIX},
    {SYS_socket,     Unless::Never,       0, Test::IsOtherFamily},
    {SYS_socketpair, Unless::HasInternet},
    {SYS_connect,    Unless::HasSockets},
    {SYS_bind,       Unless::HasInternet},
    {SYS_listen}, {SYS_accept}, {SYS_accept4},

    // Parts of the kernel that have often been the way into it.
    {SYS_bpf}, {SYS_perf_event_open}, {SYS_userfaultfd},
    {SYS_io_uring_setup}, {SYS_io_uring_enter}, {SYS_io_uring_register},
    {SYS_keyctl}, {SYS_add_key}, {SYS_request_key},
    {SYS_init_module}, {SYS_finit_module}, {SYS_delete_module}, {SYS_kexec_load},
    {SYS_kexec_file_load},
    {SYS_personality, Unless::Never, 0, Test::Differs, 0xffffffff},
    {SYS_lookup_dcookie}, {SYS_nfsservctl}, {SYS_syslog},

    // Mounts, roots and namespaces.
    {SYS_mount}, {SYS_umount2}, {SYS_pivot_root}, {SYS_chroot}, {SYS_move_mount}, {SYS_open_tree}, {OpenTreeAttributes},
    {SYS_fsopen}, {SYS_fsmount}, {SYS_fsconfig}, {SYS_fspick}, {SYS_mount_setattr},
    {SYS_unshare}, {SYS_setns},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWNS},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWCGROUP},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWUTS},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWIPC},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWUSER},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWPID},
    {SYS_clone, Unless::Never, 0, Test::Has, CLONE_NEWNET},

    // The machine as a whole.
    {SYS_reboot}, {SYS_swapon}, {SYS_swapoff}, {SYS_acct}, {SYS_quotactl}, {SYS_quotactl_fd},
    {SYS_sethostname}, {SYS_setdomainname}, {SYS_settimeofday}, {SYS_clock_settime}, {SYS_clock_adjtime}, {SYS_adjtimex},

    // Memory that the limit does not count.
    {SYS_memfd_create}, {MemorySecret}, {SYS_shmget}, {SYS_shmat},
    {SYS_mmap, Unless::Never, 3, Test::Has, MAP_SHARED | MAP_ANONYMOUS},

    // Files past the guard of files: by handles, and what it does not look at when a path leads there. An open file may be changed
    // in all these ways, as the one that a task has made.
    {SYS_name_to_handle_at}, {SYS_open_by_handle_at}, {SYS_fanotify_init}, {SYS_fanotify_mark},
    {SYS_fchmodat}, {ChangeModeAt2}, {SYS_fchownat},
    {SYS_setxattr}, {SYS_lsetxattr}, {SetAttributeAt}, {SYS_removexattr}, {SYS_lremovexattr}, {RemoveAttributeAt},
    {SetFileAttributes},
    {SYS_utimensat, Unless::Never, 1, Test::IsAddress},

    // Words put into the mouth of whoever sits at the terminal.
    {SYS_ioctl, Unless::Never, 1, Test::Equals, TIOCSTI},
    {SYS_ioctl, Unless::Never, 1, Test::Equals, TIOCLINUX},

#if defined(__x86_64__)
    // What only this machine has: old forms of calls above, and doors to its hardware.
    {SYS_fork, Unless::RunsPrograms}, {SYS_vfork, Unless::RunsPrograms},
    {SYS_chmod}, {SYS_chown}, {SYS_lchown}, {SYS_utime}, {SYS_utimes}, {SYS_futimesat},
    {SYS_uselib}, {SYS_iopl}, {SYS_ioperm}, {SYS_modify_ldt}, {SYS_create_module}, {SYS_query_module}, {SYS_get_kernel_syms},
#endif
};
// clang-format on

// All rows, those of one call beside each other.
inline constexpr auto Rows = []
{
    std::array<Row, std::size(UnsortedRows)> rows {};
    std::copy(std::begin(UnsortedRows), std::end(UnsortedRows), rows.begin());
    std::sort(rows.begin(), rows.end(), [](const Row& left, const Row& right) { return left.Call < right.Call; });
    return rows;
}();
}
