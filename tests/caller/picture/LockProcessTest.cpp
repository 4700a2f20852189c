#include "caller/picture/LockProcess.h"
#include "caller/commands/CallerFolder.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>

namespace
{
using namespace std::string_literals;

// What a decoder that was taken over would try. Each returns -1 when it is refused.
constexpr std::pair<const char*, long (*)()> Attempts[] = {
    {"read a file",     [] { return syscall(SYS_openat, AT_FDCWD, "/etc/passwd", O_RDONLY); }         },
    {"open a socket",   [] { return syscall(SYS_socket, AF_UNIX, SOCK_STREAM, 0); }                   },
    {"start a process", [] { return syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr); }},
    {"run a program",   [] { return syscall(SYS_execve, "/bin/true", nullptr, nullptr); }             },
    {"send a signal",   [] { return syscall(SYS_kill, 1, 0); }                                        },
    {"ask for limits",  [] { return syscall(SYS_prlimit64, 0, 0, nullptr, nullptr); }                 },
};

TEST(LockProcess, LeavesNothingButComputing)
{
    for (const auto& [name, attempt] : Attempts)
    {
        const pid_t child = fork();
        if (child == 0)
        {
            LockProcess();
            _exit(attempt() == -1 ? errno : 0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, W_EXITCODE(EPERM, 0)) << name;
    }
}

// As some containers do.
void ForbidLocks()
{
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_seccomp, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EACCES),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program {std::size(filter), filter};
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

TEST(LockProcess, NoPictureIsReadWithoutTheLock)
{
    const CallerFolder folder;
    WorkFolder::Write("pixel.gif", "GIF89a\1\0\1\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;"s);
    const CallerRun locked = folder.Run({"make-picture", "pixel.gif", "made.png", "0"});
    EXPECT_EQ(locked.Status, 0) << locked.Error;
    EXPECT_THAT(WorkFolder::Read("made.png"), testing::StartsWith("\x89PNG"));
    const CallerRun open = folder.Run({"make-picture", "pixel.gif", "other.png", "0"}, ForbidLocks);
    EXPECT_EQ(open.Status, 1);
    EXPECT_THAT(open.Error, testing::EndsWith("lock itself in before: Permission denied\n"));
    EXPECT_EQ(WorkFolder::Read("other.png"), "");
}
}
