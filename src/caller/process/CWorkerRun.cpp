#include "caller/process/CWorkerRun.h"

#include "caller/files/ReadRegularFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace
{
// The report are the last two lines. Of a worker that prints without end no more is kept.
constexpr size_t MaximumReport = 0x10000;

// Of such a worker no more is read at once, so that the others and the clock get their turn.
constexpr size_t ReadAtOnce = 0x40000;

// Of a log the end says why it failed.
constexpr uint64_t MaximumLog = 0x10000;

// What the worker allows itself when it is told nothing, in bytes.
constexpr uint64_t WorkersOwnLimit = uint64_t {4} << 30;

// What a shell says of a program that could not be run.
constexpr int NotRun = 127;

std::vector<char*> AsPointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// The environment of this process with other values of some variables.
std::vector<std::string> MakeEnvironment(const std::vector<std::string>& settings)
{
    std::vector<std::string> environment = settings;
    for (char** variable = environ; *variable != nullptr; ++variable)
    {
        const std::string text = *variable;
        const std::string name = text.substr(0, text.find('=') + 1);
        if (std::ranges::none_of(settings, [&](const std::string& setting) { return setting.starts_with(name); }))
            environment.push_back(text);
    }
    return environment;
}

// What a run has in its environment. Where the limit is above the worker's own, that one has to give way.
std::vector<std::string> GetSettings(const CWorkerRequest& request)
{
    std::vector<std::string> settings = {"ZV_LOG_FILE=" + request.LogFile.string(), "LC_ALL=C.UTF-8"};
    if (request.MemoryLimit > WorkersOwnLimit && getenv("ZV_MEMORY_LIMIT") == nullptr)
        settings.push_back("ZV_MEMORY_LIMIT=" + std::to_string(request.MemoryLimit));
    return settings;
}

// Signals may come at any time, and are noticed elsewhere.
void WaitFor(pid_t process)
{
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR)
    {
    }
}

// False when the other end of the pipe is closed without one.
bool ReadNumber(int descriptor, int& number)
{
    ssize_t count = -1;
    while ((count = read(descriptor, &number, sizeof number)) < 0 && errno == EINTR)
    {
    }
    return count == static_cast<ssize_t>(sizeof number);
}

// What a new process needs to become the worker.
struct Birth
{
    char* const* Arguments;
    char* const* Environment;
    int Output;   // the end of a pipe for what the worker prints
    int Failure;  // and one for the reason why it cannot be started
    pid_t Parent;
};

// In the new process, which has only one thread and calls nothing that takes memory.
[[noreturn]] void Become(const Birth& birth)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before that.
    if (getppid() != birth.Parent)
        _exit(NotRun);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    dup2(birth.Output, STDOUT_FILENO);
    dup2(birth.Output, STDERR_FILENO);
    signal(SIGPIPE, SIG_DFL);
    execve(birth.Arguments[0], birth.Arguments, birth.Environment);
    const int error = errno;
    if (write(birth.Failure, &error, sizeof error) < 0)
        _exit(NotRun);
    _exit(NotRun);
}
}

CWorkerRun::CWorkerRun(const std::string& program, CWorkerRequest request)
    : m_request(std::move(request)), m_deadline(Clock::now() + m_request.TimeLimit)
{
    Start(program);
}

CWorkerRun::~CWorkerRun()
{
    if (m_pid != 0 && !m_hasEnded)
    {
        kill(-m_pid, SIGKILL);
        WaitFor(m_pid);
    }
}

void CWorkerRun::Start(const std::string& program)
{
    std::vector<std::string> arguments = m_request.Arguments;
    arguments.insert(arguments.begin(), program);
    std::vector<std::string> environment = MakeEnvironment(GetSettings(m_request));
    const std::vector<char*> argv = AsPointers(arguments);
    const std::vector<char*> envp = AsPointers(environment);
    int output[2] = {-1, -1};
    int failure[2] = {-1, -1};
    const bool hasPipes = pipe2(output, O_CLOEXEC) == 0 && pipe2(failure, O_CLOEXEC) == 0;
    const CDescriptor writeEnd(output[1]);
    CDescriptor failureEnd(failure[1]);
    const CDescriptor failureRead(failure[0]);
    m_output = CDescriptor(output[0]);
    const pid_t parent = getpid();
    const pid_t pid = hasPipes ? fork() : -1;
    if (pid == 0)
        Become({argv.data(), envp.data(), output[1], failure[1], parent});
    int error = pid < 0 ? errno : 0;
    failureEnd.Close();
    if (pid > 0 && ReadNumber(failureRead.Get(), error))
        WaitFor(pid);
    if (error != 0)
    {
        m_outcome = {.How = CWorkerOutcome::End::NotStarted, .Number = error};
        m_hasEnded = true;
        m_output.Close();
        return;
    }
    m_pid = pid;
    setpgid(pid, pid);
    fcntl(m_output.Get(), F_SETFL, O_NONBLOCK);
    m_process = CDescriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
}

void CWorkerRun::ReadOutput()
{
    std::array<char, 0x1000> piece;
    ssize_t count = 1;
    for (size_t all = 0; count > 0 && all < ReadAtOnce; all += piece.size())
    {
        count = read(m_output.Get(), piece.data(), piece.size());
        m_outcome.Report.append(piece.data(), static_cast<size_t>(std::max<ssize_t>(count, 0)));
        if (m_outcome.Report.size() > 2 * MaximumReport)
            m_outcome.Report.erase(0, m_outcome.Report.size() - MaximumReport);
    }
    if (count > 0)
        return;
    if (count == 0 || (errno != EAGAIN && errno != EINTR))
        m_output.Close();
}

// A worker that has ended while nobody looked, for the program was stopped, is within its limits.
void CWorkerRun::EnforceLimits(Clock::time_point now)
{
    if (HasEnded())
        return;
    if (now >= m_deadline)
        Kill(CWorkerOutcome::End::TooLong);
    else if (GetMemory() > m_request.MemoryLimit)
        Kill(CWorkerOutcome::End::TooMuchMemory);
}

void CWorkerRun::Kill(CWorkerOutcome::End reason)
{
    if (m_hasEnded || m_killedFor)
        return;
    m_killedFor = reason;
    kill(-m_pid, SIGKILL);
}

// Of the worker alone: what it starts are small programs of the system.
uint64_t CWorkerRun::GetMemory() const
{
    std::ifstream file("/proc/" + std::to_string(m_pid) + "/statm");
    uint64_t all = 0;
    uint64_t present = 0;
    file >> all >> present;
    return present * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

bool CWorkerRun::HasEnded()
{
    if (m_hasEnded)
        return true;
    int status = 0;
    rusage usage {};
    if (wait4(m_pid, &status, WNOHANG, &usage) != m_pid)
        return false;
    m_hasEnded = true;
    // What it started goes with it, and would keep the pipe open.
    kill(-m_pid, SIGKILL);
    if (m_output.IsOpen())
        ReadOutput();
    const auto microseconds = [](const timeval& time)
    { return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec); };
    m_outcome.ProcessorTime = microseconds(usage.ru_utime) + microseconds(usage.ru_stime);
    m_outcome.How = m_killedFor.value_or(WIFSIGNALED(status) ? CWorkerOutcome::End::Crashed : CWorkerOutcome::End::Exited);
    m_outcome.Number = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
    if (!m_outcome.HasSucceeded())
        m_outcome.Log = ReadRegularFileEnd(m_request.LogFile, MaximumLog).value_or("");
    return true;
}

CWorkerOutcome CWorkerRun::TakeOutcome()
{
    return std::move(m_outcome);
}
