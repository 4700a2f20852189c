#include "system/shield/ZVShield.h"
#include "system/library/ZVDescriptor.h"
#include "system/shield/ZVLandlock.h"
#include "system/shield/ZVMemoryLimit.h"
#include "system/shield/ZVSystemFolders.h"

#include <csignal>
#include <cstddef>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{
// The exit status of a process that does something.
int RunChild(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(ZVMemoryLimit, ReadsBytesWithASuffix)
{
    struct Row
    {
        const wchar_t* Text;
        int64_t Bytes;
    };
    const Row rows[] = {
        {L"4G",                  4294967296   },
        {L"512m",                536870912    },
        {L"3K",                  3072         },
        {L"2t",                  2199023255552},
        {L"1000000000",          1000000000   },
        {L"9223372036854775807", INT64_MAX    },
        {L"9223372036854775808", 0            },
        {L"9999999T",            0            },
        {L"",                    0            },
        {L"G",                   0            },
        {L"0",                   0            },
        {L"-4G",                 0            },
        {L"4 G",                 0            },
        {L"4GB",                 0            },
        {L"4.5G",                0            },
    };
    for (const Row& row : rows)
        EXPECT_EQ(ZVMemoryLimit::Parse(row.Text), row.Bytes) << row.Text;
}

#if !defined(__SANITIZE_ADDRESS__)
TEST(ZVMemoryLimit, LeavesATighterLimit)
{
    const auto getLimitAfter = [](rlim_t before, int64_t limit)
    {
        return RunChild(
            [=]
            {
                const rlimit first {before, before};
                setrlimit(RLIMIT_DATA, &first);
                rlimit then {};
                const bool isSet = ZVMemoryLimit::Set(limit) && getrlimit(RLIMIT_DATA, &then) == 0;
                return isSet ? static_cast<int>(then.rlim_max >> 30) : -1;
            });
    };
    EXPECT_EQ(getLimitAfter(rlim_t {1} << 30, int64_t {2} << 30), 1);
    EXPECT_EQ(getLimitAfter(rlim_t {3} << 30, int64_t {2} << 30), 2);
}
#endif

TEST(ZVSystemFolders, HomeFoldersAndThoseAroundThemAreShared)
{
    struct Row
    {
        const wchar_t* Folder;
        bool IsShared;
    };
    const Row rows[] = {
        {L"/",                    true },
        {L"/home/",               true },
        {L"/home/viewer/",        true },
        {L"/home/viewer/Videos/", false},
        {L"/usr/share/",          true },
        {L"/usr/share/doc/",      false},
        {L"/usr/sha/",            false},
        {L"/etc/",                true },
        {L"/srv/",                false},
    };
    const char* const home = getenv("HOME");
    const std::string before = home == nullptr ? "/" : home;
    setenv("HOME", "/usr/share", 1);
    for (const Row& row : rows)
        EXPECT_EQ(ZVSystemFolders::IsShared(row.Folder), row.IsShared) << row.Folder;
    setenv("HOME", before.c_str(), 1);
}

TEST(ZVShield, ASecondThreadWouldNotBeLockedIn)
{
    const auto lock = []
    {
        std::thread other(pause);
        other.detach();
        return ZVShield::Lock({}, ZVShield::Mode::Required) ? 1 : 0;
    };
    EXPECT_EQ(RunChild(lock), 0);
}

// The guard of files keeps more than files, where the filter of calls lets calls through or is not there.
TEST(ZVLandlock, KeepsFromServersAndOtherProcesses)
{
    if (syscall(SYS_landlock_create_ruleset, nullptr, 0, 1) < 6)
        GTEST_SKIP() << "the kernel's guard of files knows neither sockets nor signals";
    sockaddr_in address {.sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
    sockaddr_un name {.sun_family = AF_UNIX, .sun_path = "\0zv-shield-test"};
    const auto listen = [](int family, void* place, socklen_t size)
    {
        ZVDescriptor server(socket(family, SOCK_STREAM, 0));
        EXPECT_EQ(bind(server.Get(), static_cast<sockaddr*>(place), size), 0);
        EXPECT_EQ(::listen(server.Get(), 1), 0);
        getsockname(server.Get(), static_cast<sockaddr*>(place), &size);
        return server;
    };
    const ZVDescriptor servers[] = {listen(AF_INET, &address, sizeof address), listen(AF_UNIX, &name, sizeof name)};
    const auto connect = [](int family, const void* place, socklen_t size)
    {
        const ZVDescriptor client(socket(family, SOCK_STREAM, 0));
        return ::connect(client.Get(), static_cast<const sockaddr*>(place), size) == 0 ? 0 : errno;
    };
    using Network = ZVShieldRules::Network;
    const auto afterLock = [](Network sockets, const std::function<int()>& work)
    {
        return RunChild(
            [&]
            {
                prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
                return ZVLandlock::Restrict({.Paths = {}, .Sockets = sockets}) != 0 ? -1 : work();
            });
    };
    const auto connectTCP = [&] { return connect(AF_INET, &address, sizeof address); };
    const auto serveTCP = [&]
    {
        sockaddr_in any {.sin_family = AF_INET, .sin_port = 0, .sin_addr = {}, .sin_zero = {}};
        const ZVDescriptor server(socket(AF_INET, SOCK_STREAM, 0));
        return bind(server.Get(), reinterpret_cast<const sockaddr*>(&any), sizeof any) == 0 ? 0 : errno;
    };
    const auto connectLocal = [&] { return connect(AF_UNIX, &name, sizeof name); };
    EXPECT_EQ(afterLock(Network::None, connectTCP), EACCES);
    EXPECT_EQ(afterLock(Network::Local, connectTCP), EACCES);
    EXPECT_EQ(afterLock(Network::Internet, connectTCP), 0);
    EXPECT_EQ(afterLock(Network::Internet, serveTCP), EACCES);
    EXPECT_EQ(afterLock(Network::None, connectLocal), EPERM);
    EXPECT_EQ(afterLock(Network::Local, connectLocal), 0);
    EXPECT_EQ(afterLock(Network::Internet, [] { return kill(getppid(), 0) == 0 ? 0 : errno; }), EPERM);
}
}
