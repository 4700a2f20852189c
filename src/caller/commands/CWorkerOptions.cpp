#include "caller/commands/CWorkerOptions.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace
{
// More workers at a time bring the disks of a server to their knees before they bring speed.
constexpr unsigned MaximumDefaultJobs = 4;

constexpr int MaximumJobs = 256;

// Below this nothing can be analyzed; who leaves the unit out is told so.
constexpr uint64_t MinimumMemory = uint64_t {16} << 20;
constexpr uint64_t MaximumMemory = uint64_t {1} << 50;

// A year, which is for ever.
constexpr double MaximumTimeLimit = 365 * 24 * 3600.0;

// Without this, each film of a library would be one that failed, and not be looked at again.
void ExpectProgram(const std::string& program)
{
    const int error = access(program.c_str(), X_OK) != 0 ? errno : std::filesystem::is_directory(program) ? EACCES : 0;
    if (error != 0)
        throw std::runtime_error("the worker " + program + " cannot be started: " + strerror(error));
}
}

void CWorkerOptions::AddTo(CLI::App& app, Jobs jobs)
{
    if (jobs == Jobs::Several)
    {
        m_settings.Jobs = std::clamp(std::thread::hardware_concurrency(), 1U, MaximumDefaultJobs);
        app.add_option("--jobs", m_settings.Jobs, "Workers at a time; by default one for each core, at most 4")
            ->check(CLI::Range(1, MaximumJobs).description(""))
            ->type_name("N");
    }
    app.add_option("--time-limit", m_timeLimit, "Seconds after which a worker is killed; by default 60, for black bars 300")
        ->check(CLI::Range(0.001, MaximumTimeLimit).description(""))
        ->type_name("SECONDS");
    app.add_option("--memory", m_memory, "Memory at which a worker is killed, such as 500M; by default 2G")
        ->transform(CLI::AsSizeValue(false).description(""))
        ->check(CLI::Range(MinimumMemory, MaximumMemory, "").description(""))
        ->type_name("SIZE");
    app.add_option("--worker", m_settings.Program, "The worker's program; by default the one beside this program")
        ->type_name("PROGRAM");
}

CWorkerSettings CWorkerOptions::GetSettings() const
{
    CWorkerSettings settings = m_settings;
    if (settings.Program.empty())
        settings.Program = FindWorker();
    ExpectProgram(settings.Program);
    if (m_memory > 0)
        settings.MemoryLimit = m_memory;
    if (m_timeLimit > 0)
        settings.TimeLimit = settings.BarsTimeLimit = std::chrono::milliseconds(static_cast<int64_t>(m_timeLimit * 1000));
    return settings;
}
