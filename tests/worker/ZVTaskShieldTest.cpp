// A decoder that was taken over, in a process that is locked in as the dispatcher does it.

#include "LockedTask.h"
#include "system/library/CProcessInfo.h"
#include "system/library/ZVNativeBytes.h"
#include "worker/ZVProgramFiles.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <linux/landlock.h>
#include <sched.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/personality.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>

namespace
{
using Attempt = LockedTask::Attempt;

int ReasonUnless(bool isDone)
{
    return isDone ? 0 : errno;
}

// The reason of a call that cannot succeed as it is made, unless it is the one that it then has: that counts as a success.
int Except(int expected, int reason)
{
    return reason == expected ? 0 : reason;
}

int Open(const std::string& path, int flags)
{
    return ReasonUnless(ZVDescriptor(open(path.c_str(), flags | O_CLOEXEC, 0600)).IsOpen());
}

template <class... Arguments>
int Call(long number, Arguments... arguments)
{
    return ReasonUnless(syscall(number, arguments...) != -1);
}

// The paths are within the folder of the task.
Attempt Reads(const char* name)
{
    return [name](const LockedTask& task) { return Open(task.PathOf(name), O_RDONLY); };
}

Attempt Writes(const char* name)
{
    return [name](const LockedTask& task) { return Open(task.PathOf(name), O_WRONLY | O_CREAT); };
}

Attempt Changes(int (*change)(const char* path), const char* name)
{
    return [change, name](const LockedTask& task) { return ReasonUnless(change(task.PathOf(name).c_str()) == 0); };
}

// The paths are within the folder of the worker.
Attempt Installs(const char* name)
{
    return [name](const LockedTask&)
    {
        const std::string folder = ZVNativeBytes(CProcessInfo::Get().GetInstallPath()).GetBytes();
        const int reason = Open(folder + name, O_WRONLY | O_CREAT);
        if (reason == 0 && std::filesystem::is_empty(folder + name))
            unlink((folder + name).c_str());
        return reason;
    };
}

Attempt OpensOfVictim(const char* name)
{
    return [name](const LockedTask& task) { return Open("/proc/" + std::to_string(task.Victim) + name, O_RDONLY); };
}

Attempt Runs(const char* program)
{
    return [program](const LockedTask&)
    {
        char option[] = "--help";
        char* argv[] = {const_cast<char*>(program), option, nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
        pid_t child = 0;
        const int error = posix_spawn(&child, program, &actions, nullptr, argv, environ);
        posix_spawn_file_actions_destroy(&actions);
        return error != 0 ? error : ReasonUnless(waitpid(child, nullptr, 0) == child);
    };
}

Attempt Connects(int family)
{
    return [family](const LockedTask& task)
    {
        const ZVDescriptor socket(::socket(family, SOCK_STREAM, 0));
        const auto address = family == AF_INET ? task.Server : task.LocalServer;
        return ReasonUnless(socket.IsOpen() &&
                            connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), task.GetSize(family)) == 0);
    };
}

int ReadMemory(const LockedTask& task)
{
    int found = 0;
    const iovec here {&found, sizeof found};
    const iovec there {const_cast<int*>(&task.Secret), sizeof found};
    return ReasonUnless(process_vm_readv(task.Victim, &here, 1, &there, 1, 0) == sizeof found);
}

Attempt Maps(size_t gigabytes, int flags)
{
    return [size = gigabytes << 30, flags](const LockedTask&)
    {
        void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, flags | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        return memory == MAP_FAILED ? errno : ReasonUnless(munmap(memory, size) == 0);
    };
}

#if !defined(__SANITIZE_ADDRESS__)
#if defined(__x86_64__)
constexpr long OldFork = SYS_fork;
#else
constexpr long OldFork = SYS_clone;
#endif

// What a process that was started does, and whether it was.
bool EndChild(long child)
{
    if (child == 0)
        _exit(0);
    return child > 0;
}
#endif

int ControlDevice(const LockedTask&)
{
    const ZVDescriptor device(open("/dev/null", O_RDONLY | O_CLOEXEC));
    return Except(ENOTTY, Call(SYS_ioctl, device.Get(), TIOCGWINSZ, nullptr));
}

int MakePairOfSockets(const LockedTask&)
{
    int ends[2];
    return ReasonUnless(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0);
}

// As a program of 32 bits asks for the number of its process.
int CallAsShortProgram(const LockedTask&)
{
    int result = 0;
#if defined(__x86_64__)
    asm volatile("int $0x80" : "=a"(result) : "a"(20) : "memory");
#else
    result = -EPERM;
#endif
    return result < 0 ? -result : 0;
}

// An attempt, how it fails, and for which tasks it is none.
struct Attack
{
    const char* Name;
    int Reason;
    Attempt Try;
    ZVTaskNeeds AllowedTo = ZVTaskNeeds::Nothing;
    int Version = 2;  // of the kernel's guard of files that refuses it
};

// clang-format off
const Attack Attacks[] = {
    {"reads a key in the home folder",       EACCES, Reads("home/.ssh/key")},
    {"reads it by another way",              EACCES, [](auto& task) { return Open("/proc/self/root" + task.PathOf("home/.ssh/key"), O_RDONLY); }},
    {"lists the home folder",                EACCES, Reads("home")},
    {"reads a file of somebody else",        EACCES, Reads("stranger")},
    {"reads the list of the users",          EACCES, Reads("../../../../../../../../etc/passwd")},
    {"writes beside the film",               EACCES, Writes("home/Videos/film/new")},
    {"writes into the film",                 EACCES, Writes("home/Videos/film/film.mp4")},
    {"writes into the configuration",        EACCES, Writes("home/.config/autostart")},
    {"adds a component to the user's data",  EACCES, Writes("home/.zivora/Generic/Plugins/new")},
    {"writes into a library of the worker",  EACCES, Installs("libZVTools.so")},
    {"adds a library to the worker",         EACCES, Installs("libnew.so")},
    {"writes into a program of the system",  EACCES, Writes("../../../../../../../../usr/bin/env")},
    {"cuts a file short",                    EACCES, Changes([](const char* path) { return truncate(path, 0); }, "stranger"), ZVTaskNeeds::Nothing, 3},
    {"deletes a file",                       EACCES, Changes([](const char* path) { return unlink(path); }, "home/.config/settings")},
    {"deletes a folder",                     EACCES, Changes([](const char* path) { return rmdir(path); }, "home/empty")},
    {"makes a folder",                       EACCES, Changes([](const char* path) { return mkdir(path, 0700); }, "home/Videos/film/folder")},
    {"makes a file",                         EACCES, Changes([](const char* path) { return mknod(path, S_IFREG | 0600, 0); }, "home/Videos/film/file")},
    {"makes a character device",             EACCES, Changes([](const char* path) { return mknod(path, S_IFCHR | 0600, 0); }, "results/characters")},
    {"makes a block device",                 EACCES, Changes([](const char* path) { return mknod(path, S_IFBLK | 0600, 0); }, "results/blocks")},
    {"makes a socket file",                  EACCES, Changes([](const char* path) { return mknod(path, S_IFSOCK | 0600, 0); }, "results/socket")},
    {"plants a link",                        EACCES, Changes([](const char* path) { return symlink("/", path); }, "results/link")},
    {"makes a pipe",                         EACCES, Changes([](const char* path) { return mkfifo(path, 0600); }, "results/pipe")},
    {"changes the mode of a file",           EPERM,  Changes([](const char* path) { return chmod(path, 0666); }, "stranger")},
    {"changes the owner of a file",          EPERM,  Changes([](const char* path) { return chown(path, geteuid(), getegid()); }, "stranger")},
    {"changes the time of a file",           EPERM,  Changes([](const char* path) { return utimensat(AT_FDCWD, path, nullptr, 0); }, "stranger")},
    {"controls a device",                    EACCES, ControlDevice, ZVTaskNeeds::Nothing, 5},
    {"makes a socket",                       EPERM,  [](auto&) { return ReasonUnless(ZVDescriptor(socket(AF_UNIX, SOCK_STREAM, 0)).IsOpen()); }, ZVTaskNeeds::AsksDisplay},
    {"connects to the loopback address",     EPERM,  Connects(AF_INET)},
    {"connects to a server of the machine",  EPERM,  Connects(AF_UNIX), ZVTaskNeeds::AsksDisplay},
    {"makes a pair of sockets",              EPERM,  MakePairOfSockets},
    {"starts a shell",                       EPERM,  Runs("/bin/sh")},
    {"becomes a program",                    EPERM,  [](auto&) { return Except(ENOENT, Call(SYS_execve, "/none", nullptr, nullptr)); }},
    {"becomes an open program",              EPERM,  [](auto&) { return Except(ENOENT, Call(SYS_execveat, -1, "", nullptr, nullptr, 0)); }},
    {"reads another process's memory",       EPERM,  ReadMemory},
    {"opens another process's memory",       EACCES, OpensOfVictim("/mem")},
    {"reads another process's environment",  EACCES, OpensOfVictim("/environ")},
    {"signals another process",              EPERM,  [](auto& task) { return ReasonUnless(kill(task.Victim, 0) == 0); }},
    {"signals a thread of another process",  EPERM,  [](auto& task) { return Call(SYS_tgkill, task.Victim, task.Victim, 0); }},
    {"limits another process",               EPERM,  [](auto& task) { return ReasonUnless(prlimit(task.Victim, RLIMIT_CORE, nullptr, nullptr) == 0); }},
    {"starts a process by the new call",     ENOSYS, [](auto&) { return Except(EINVAL, Call(SYS_clone3, nullptr, 0)); }},
    {"shares memory that no limit counts",   EPERM,  Maps(1, MAP_SHARED)},
    {"makes a file in memory",               EPERM,  [](auto&) { return ReasonUnless(ZVDescriptor(memfd_create("", 0)).IsOpen()); }},
    {"types at the terminal",                EPERM,  [](auto&) { return Except(EBADF, Call(SYS_ioctl, -1, 0xff00000000 | TIOCSTI, nullptr)); }},
    {"pastes at the console",                EPERM,  [](auto&) { return Except(EBADF, Call(SYS_ioctl, -1, TIOCLINUX, nullptr)); }},
    {"loads programs at known addresses",    EPERM,  [](auto&) { return Call(SYS_personality, ADDR_NO_RANDOMIZE); }},
    {"calls as a program of 32 bits",        EPERM,  CallAsShortProgram},
#if !defined(__SANITIZE_ADDRESS__)
    // The sanitizer's own memory and its search for leaks need these.
    {"fills the memory",                     ENOMEM, Maps(5, MAP_PRIVATE)},
    {"starts a process",                     EPERM,  [](auto&) { return ReasonUnless(EndChild(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0))); }},
    {"traces another process",               EPERM,  [](auto&) { return Except(ESRCH, Call(SYS_ptrace, -1, -1, 0, 0)); }},
    {"copies itself",                        EPERM,  [](auto&) { return ReasonUnless(EndChild(syscall(OldFork, SIGCHLD, 0, 0, 0, 0))); }},
    {"lends itself to a copy",               EPERM,  [](auto&) { return ReasonUnless(EndChild(vfork())); }},
#endif
    {"enters a namespace of its own",        EPERM,  [](auto&) { return ReasonUnless(unshare(CLONE_NEWUSER) == 0); }},
};

// System calls that no task needs, whatever they are told. Here they are told nothing that makes sense.
struct Probe
{
    const char* Name;
    long Number;
};

#define PROBE(name) {#name, SYS_##name}
constexpr Probe Probes[] = {
    PROBE(bpf), PROBE(perf_event_open), PROBE(userfaultfd), PROBE(io_uring_setup), PROBE(io_uring_enter),
    PROBE(io_uring_register), PROBE(keyctl), PROBE(add_key), PROBE(request_key), PROBE(mount), PROBE(umount2), PROBE(pivot_root),
    PROBE(chroot), PROBE(move_mount), PROBE(open_tree), PROBE(fsopen), PROBE(fsmount), PROBE(fsconfig), PROBE(fspick),
    PROBE(mount_setattr), PROBE(init_module), PROBE(finit_module), PROBE(delete_module), PROBE(kexec_load), PROBE(setns),
    PROBE(process_vm_readv), PROBE(process_vm_writev), PROBE(kcmp), PROBE(pidfd_open), PROBE(pidfd_getfd),
    PROBE(pidfd_send_signal), PROBE(process_madvise), PROBE(kill), PROBE(tgkill), PROBE(tkill), PROBE(rt_sigqueueinfo),
    PROBE(rt_tgsigqueueinfo), PROBE(migrate_pages), PROBE(move_pages), PROBE(reboot), PROBE(swapon), PROBE(swapoff), PROBE(acct),
    PROBE(quotactl), PROBE(quotactl_fd), PROBE(sethostname), PROBE(setdomainname), PROBE(settimeofday), PROBE(clock_settime),
    PROBE(clock_adjtime), PROBE(adjtimex), PROBE(syslog), PROBE(lookup_dcookie), PROBE(nfsservctl), PROBE(name_to_handle_at),
    PROBE(open_by_handle_at), PROBE(fanotify_init), PROBE(fanotify_mark), PROBE(shmget), PROBE(shmat), PROBE(setxattr),
    PROBE(lsetxattr), PROBE(removexattr), PROBE(lremovexattr), PROBE(fchmodat), PROBE(fchownat), PROBE(connect), PROBE(listen),
    PROBE(accept), PROBE(accept4), PROBE(bind), PROBE(kexec_file_load),
    // Without names in older headers.
    {"memfd_secret", 447}, {"process_mrelease", 448}, {"fchmodat2", 452}, {"setxattrat", 463}, {"removexattrat", 466},
    {"open_tree_attr", 467}, {"file_setattr", 469},
#if defined(__x86_64__)
    PROBE(lchown), PROBE(utime), PROBE(utimes), PROBE(futimesat), PROBE(uselib), PROBE(iopl),
    PROBE(ioperm), PROBE(modify_ldt), PROBE(create_module), PROBE(query_module), PROBE(get_kernel_syms),
#endif
};
// clang-format on

class TaskShield : public testing::Test
{
protected:
    void SetUp() override
    {
        if (m_version < 2)
            GTEST_SKIP() << "the kernel guards no files, or is too old to guard them";
        if (geteuid() != LockedTask::Root)
            GTEST_SKIP() << "only root can be both kinds of users";
    }

    std::vector<int> TryAll(uid_t user, const std::vector<std::string>& commandLine)
    {
        std::vector<Attempt> attempts;
        for (const Attack& attack : Attacks)
            attempts.push_back(attack.Try);
        return m_task.Try(user, commandLine, attempts);
    }

    int TryOne(const std::vector<std::string>& commandLine, const Attempt& attempt)
    {
        return m_task.Try(LockedTask::Ordinary, commandLine, {attempt})[0];
    }

    const long m_version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    LockedTask m_task;
    const std::string m_film = m_task.PathOf("home/Videos/film/film.mp4");
    const std::string m_result = m_task.PathOf("results/result.xml");
    const std::vector<std::string> m_analysis {"/AnalyzeZVVid", m_film, m_result};
};

TEST_F(TaskShield, ATaskThatIsTakenOverReachesNothingElse)
{
    for (const ZVWorkerCommand& command : GetWorkerCommands())
        for (const uid_t user : {LockedTask::Root, LockedTask::Ordinary})
        {
            const std::vector<int> reasons = TryAll(user, {ZVNativeBytes(command.Name).GetBytes(), m_film, m_result});
            for (size_t index = 0; index < std::size(Attacks); ++index)
            {
                const bool isAllowed = Needs(command.Needs, Attacks[index].AllowedTo) || m_version < Attacks[index].Version;
                EXPECT_EQ(reasons[index], isAllowed ? 0 : Attacks[index].Reason)
                    << command.Name << " of user " << user << " " << Attacks[index].Name;
            }
        }
}

// Otherwise the test above would show nothing.
TEST_F(TaskShield, WithoutALockEachAttackSucceeds)
{
    if (prctl(PR_CAPBSET_READ, CAP_SYS_ADMIN) != 1)
        GTEST_SKIP() << "root lacks rights here, as in a container";
    const std::vector<int> reasons = TryAll(LockedTask::Root, {});
    for (size_t index = 0; index < std::size(Attacks); ++index)
        EXPECT_EQ(reasons[index], 0) << Attacks[index].Name;
}

TEST_F(TaskShield, CallsThatNoTaskNeedsAreRefused)
{
    std::vector<Attempt> attempts;
    for (const Probe& probe : Probes)
        attempts.push_back([&probe](auto&) { return Call(probe.Number, -1L, -1L, -1L, -1L, -1L, -1L); });
    const std::vector<int> free = m_task.Try(LockedTask::Root, {}, attempts);
    const std::vector<int> locked = m_task.Try(LockedTask::Root, {"/Test"}, attempts);
    for (size_t index = 0; index < std::size(Probes); ++index)
    {
        // A container refuses some by itself.
        const bool isFree = free[index] != EPERM || prctl(PR_CAPBSET_READ, CAP_SYS_ADMIN) != 1;
        EXPECT_TRUE(isFree) << Probes[index].Name;
        EXPECT_EQ(locked[index], EPERM) << Probes[index].Name;
    }
}

TEST_F(TaskShield, NoThreadStartsInANamespace)
{
    for (const int space : {CLONE_NEWNS, CLONE_NEWCGROUP, CLONE_NEWUTS, CLONE_NEWIPC, CLONE_NEWUSER, CLONE_NEWPID, CLONE_NEWNET})
    {
        // Without the lock this is wrong: threads share more than that.
        const Attempt start = [space](auto&) { return Call(SYS_clone, space | CLONE_THREAD, 0, 0, 0, 0); };
        EXPECT_EQ(TryOne({}, start), EINVAL) << space;
        EXPECT_EQ(TryOne({"/Test"}, start), EPERM) << space;
    }
}

// Where an address is asked for, only the sockets of the internet are there.
TEST_F(TaskShield, AnAddressOpensTheInternetAlone)
{
    const std::vector<std::string> task {"/AnalyzeDevices", "http://127.0.0.1/variables.xml", m_result};
    EXPECT_EQ(TryOne(task, Connects(AF_INET)), 0);
    EXPECT_EQ(TryOne(task, [](auto&) { return ReasonUnless(ZVDescriptor(socket(AF_ALG, SOCK_SEQPACKET, 0)).IsOpen()); }), EPERM);
    EXPECT_EQ(TryOne(task, Reads("home/.ssh/key")), EACCES);
}

TEST_F(TaskShield, NoKeyIsBroughtAmongTheResults)
{
    const Attempt bring = [](auto& task)
    { return ReasonUnless(link(task.PathOf("home/.ssh/key").c_str(), task.PathOf("results/key").c_str()) == 0); };
    EXPECT_EQ(TryOne(m_analysis, bring), EXDEV);
    EXPECT_EQ(TryOne({}, bring), 0);
}

TEST_F(TaskShield, ACrashWritesNoMemoryAndNoProgramGainsRights)
{
    const Attempt getCoreLimit = [](auto&)
    {
        rlimit limit {};
        getrlimit(RLIMIT_CORE, &limit);
        return static_cast<int>(limit.rlim_max);
    };
    EXPECT_EQ(TryOne({"/Test"}, getCoreLimit), 0);
    EXPECT_EQ(TryOne({"/Test"}, [](auto&) { return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0); }), 1);
}

// What a film needs, and what it does not get because it is at an unlucky place.
TEST_F(TaskShield, AFilmsSurroundingsAreReadAndTheResultsWritten)
{
    std::filesystem::create_directory_symlink(m_task.PathOf("results"), m_task.PathOf("link"));
    struct Row
    {
        const char* Name;
        std::string Film;
        std::string Result;
        Attempt Try;
        int Reason;
    };
    const std::string film = m_task.PathOf("home/film.mkv");
    const std::string disc = m_task.PathOf("disc/BDMV/index.bdmv");
    const std::string disc2 = m_task.PathOf("home/BDMV/index.bdmv");
    const std::string dvd = m_task.PathOf("dvd/VIDEO_TS/VIDEO_TS.IFO");
    const Row rows[] = {
        {"the film",                          m_film,                m_result,                           Reads("home/Videos/film/film.mp4"), 0     },
        {"what is beside it",                 m_film,                m_result,                           Reads("home/Videos/film/film.srt"), 0     },
        {"the result",                        m_film,                m_result,                           Writes("results/new"),              0     },
        {"a result through a link",           m_film,                m_task.PathOf("link/result.xml"),   Writes("results/new"),              0     },
        {"a result in new folders",           m_film,                m_task.PathOf("new/of/result.xml"), Writes("new/of/result.xml"),        0     },
        {"what is beside new folders",        m_film,                m_task.PathOf("new/of/result.xml"), Writes("new/other.xml"),            EACCES},
        {"a film right in the home folder",   film,                  m_result,                           Reads("home/film.mkv"),             0     },
        {"what is beside it",                 film,                  m_result,                           Reads("home/.ssh/key"),             EACCES},
        {"the home folder's list",            film,                  m_result,                           Reads("home"),                      EACCES},
        {"the whole disc",                    disc,                  m_result,                           Reads("disc/CERTIFICATE/id"),       0     },
        {"the disc's list",                   disc,                  m_result,                           Reads("disc"),                      0     },
        {"a DVD without its main file",       dvd,                   m_result,                           Reads("dvd/JACKET_P/1.mp2"),        0     },
        {"what is beside the disc",           disc,                  m_result,                           Reads("stranger"),                  EACCES},
        {"a disc right in the home folder",   disc2,                 m_result,                           Reads("home/BDMV/STREAM/1.m2ts"),   0     },
        {"what is beside that disc",          disc2,                 m_result,                           Reads("home/.ssh/key"),             EACCES},
        {"a folder in the place of a film",   m_task.PathOf("home"), m_result,                           Reads("home/.ssh/key"),             EACCES},
        {"a folder in the place of a result", m_film,                m_task.PathOf("home"),              Writes("home/.config/settings"),    EACCES},
        {"a result among shared memory",      m_film,                "/dev/shm/zv-shield.xml",
         Writes("../../../../../../../../dev/shm/zv-shield.xml"),                                                                            0     },
        {"a device",                          "/dev/null",           m_result,                           Reads("home"),                      EACCES},
    };
    for (const Row& row : rows)
        EXPECT_EQ(TryOne({"/AnalyzeZVVid", row.Film, row.Result}, row.Try), row.Reason) << row.Name;
    std::filesystem::remove("/dev/shm/zv-shield.xml");
}

// A cover may have to be moved between devices, which takes a program.
TEST_F(TaskShield, BetweenDevicesOnlyTheProgramsThatMoveFilesRun)
{
    if (mount("tmpfs", m_task.PathOf("results").c_str(), "tmpfs", 0, "size=64k,mode=777") != 0)
        GTEST_SKIP() << "no tmpfs can be mounted";
    const std::vector<std::string> task {"/Thumbnail", m_film, m_task.PathOf("results/picture.png")};
    const std::string move = ZVNativeBytes(ZVProgramFiles::Find("mv")).GetBytes();
    EXPECT_EQ(TryOne(task, Runs(move.c_str())), 0);
    EXPECT_EQ(TryOne(task, Runs("/bin/sh")), EACCES);
    const std::string other = m_task.PathOf("home/Videos/film/program");
    std::filesystem::copy(move, other);
    EXPECT_EQ(TryOne(task, Runs(other.c_str())), EACCES);
    EXPECT_EQ(TryOne(m_analysis, Runs(move.c_str())), EPERM);
    umount(m_task.PathOf("results").c_str());
}
}
