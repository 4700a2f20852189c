#pragma once

#include "system/library/CProcessInfo.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"
#include "worker/ZVTaskShield.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <grp.h>
#include <netinet/in.h>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// A small machine around a task: a home folder with secrets in it, films, a result's folder, another process of the user, and servers
// that listen. Locks processes of its own in with what a task needs, and has them try things.
class LockedTask
{
public:
    static constexpr uid_t Root = 0;
    static constexpr uid_t Ordinary = 65534;

    // What an attempt comes to: 0 when it succeeds, otherwise the system's reason.
    using Attempt = std::function<int(const LockedTask& task)>;

    LockedTask()
    {
        std::string path = std::filesystem::temp_directory_path() / "zv-shield-XXXXXX";
        Folder = mkdtemp(path.data());
        for (const char* name :
             {"home/.ssh/key", "home/.config/settings", "home/film.mkv", "home/Videos/film/film.mp4", "home/Videos/film/film.srt",
              "home/BDMV/index.bdmv", "home/BDMV/STREAM/1.m2ts", "home/.zivora/Generic/Plugins/decoder", "disc/BDMV/index.bdmv",
              "disc/CERTIFICATE/id", "dvd/VIDEO_TS/VIDEO_TS.BUP", "dvd/JACKET_P/1.mp2", "results/old", "stranger"})
        {
            std::filesystem::create_directories(std::filesystem::path(PathOf(name)).parent_path());
            std::ofstream(PathOf(name)) << "content";
        }
        std::filesystem::create_directory(PathOf("home/empty"));
    }
    ~LockedTask() { std::filesystem::remove_all(Folder); }
    LockedTask(const LockedTask&) = delete;
    LockedTask& operator=(const LockedTask&) = delete;

    // Has a process of a user try each of several things, locked in with a command line's needs or, without one, not at all.
    std::vector<int> Try(uid_t user, std::vector<std::string> commandLine, const std::vector<Attempt>& attempts)
    {
        std::vector<int> outcomes(attempts.size(), ENOMSG);
        void* const shared =
            mmap(nullptr, sizeof(int) * attempts.size(), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        auto* const places = static_cast<int*>(shared);
        std::copy(outcomes.begin(), outcomes.end(), places);
        StartVictim(user);
        StartServers();
        const pid_t child = fork();
        if (child == 0)
        {
            Become(user);
            if (!commandLine.empty() && !Lock(commandLine))
                _exit(1);
            for (size_t index = 0; index < attempts.size(); ++index)
                places[index] = attempts[index](*this);
            // The block of the process has its name in a folder of the system.
            CProcessInfo::Get().Remove();
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        kill(Victim, SIGKILL);
        waitpid(Victim, nullptr, 0);
        std::copy(places, places + attempts.size(), outcomes.begin());
        munmap(shared, sizeof(int) * attempts.size());
        return outcomes;
    }

    std::string PathOf(const std::string& name) const { return Folder + "/" + name; }

    std::string Folder;
    pid_t Victim = 0;       // another process of the user
    const int Secret = 42;  // something in the memory of both

    // Where servers listen: on the loopback address, and under a name that is in no folder.
    sockaddr_storage Server {};
    sockaddr_storage LocalServer {};
    static socklen_t GetSize(int family)
    {
        return family == AF_INET ? sizeof(sockaddr_in) : offsetof(sockaddr_un, sun_path) + 1 + AbstractNameSize;
    }

private:
    static constexpr socklen_t AbstractNameSize = 20;

    void Become(uid_t user) const
    {
        setenv("HOME", PathOf("home").c_str(), 1);
        unsetenv("DISPLAY");
        for (const char* name : {"ZV_SHIELD", "ZV_MEMORY_LIMIT", "XAUTHORITY"})
            unsetenv(name);
        if (user == geteuid())
            return;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder))
            if (chown(entry.path().c_str(), user, user) != 0)
                _exit(1);
        if (chown(Folder.c_str(), user, user) != 0 || setgroups(0, nullptr) != 0 || setresgid(user, user, user) != 0 ||
            setresuid(user, user, user) != 0)
            _exit(1);
    }

    void StartVictim(uid_t user)
    {
        Victim = fork();
        if (Victim != 0)
            return;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const bool isUser = setresuid(user, user, user) == 0;
        prctl(PR_SET_DUMPABLE, 1);
        while (isUser)
            pause();
        _exit(1);
    }

    void StartServers()
    {
        m_servers[0] = ZVDescriptor(socket(AF_INET, SOCK_STREAM, 0));
        m_servers[1] = ZVDescriptor(socket(AF_UNIX, SOCK_STREAM, 0));
        auto* const address = reinterpret_cast<sockaddr_in*>(&Server);
        address->sin_family = AF_INET;
        address->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const name = reinterpret_cast<sockaddr_un*>(&LocalServer);
        name->sun_family = AF_UNIX;
        ("zv-shield-" + std::to_string(getpid())).copy(name->sun_path + 1, AbstractNameSize);
        bind(m_servers[0].Get(), reinterpret_cast<sockaddr*>(&Server), GetSize(AF_INET));
        bind(m_servers[1].Get(), reinterpret_cast<sockaddr*>(&LocalServer), GetSize(AF_UNIX));
        for (const ZVDescriptor& server : m_servers)
            listen(server.Get(), 5);
        socklen_t size = sizeof Server;
        getsockname(m_servers[0].Get(), reinterpret_cast<sockaddr*>(&Server), &size);
    }

    // As the dispatcher does it.
    static bool Lock(std::vector<std::string>& arguments)
    {
        arguments.insert(arguments.begin(), "ZVWorker");
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        ZVCommandLine commandLine;
        commandLine.Assign(static_cast<int32_t>(argv.size()), argv.data());
        const ZVLogScope scope(ZVLogCategory::General, "LockedTask", false);
        ZVCommandMatch match;
        for (const ZVWorkerCommand& command : GetWorkerCommands())
            if (commandLine.Match(command.Name, &match, command.MinimumParameters))
                // Until the end of the process.
                return (new ZVTaskShield(command, {match, commandLine, scope}))->Lock();
        return false;
    }

    ZVDescriptor m_servers[2];
};
