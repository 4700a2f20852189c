#include "caller/process/CWorkerPool.h"

#include <algorithm>
#include <csignal>
#include <poll.h>
#include <vector>

namespace
{
using namespace std::chrono_literals;

// How often the memory of workers is looked at, which costs a small file each.
constexpr auto CheckInterval = 200ms;
}

CWorkerPool::CWorkerPool(std::string program, size_t jobs) : m_program(std::move(program)), m_jobs(jobs) {}

CWorkerPool::~CWorkerPool() = default;

void CWorkerPool::Start(CWorkerRequest request, EndFunction onEnd)
{
    const std::string program = request.Program.empty() ? m_program : request.Program;
    m_runs.push_back(std::unique_ptr<Run>(new Run {
        std::move(onEnd), {program, std::move(request)}
    }));
}

void CWorkerPool::Wait(std::chrono::milliseconds atMost)
{
    std::vector<pollfd> waited;
    for (const auto& run : m_runs)
        for (const int descriptor : {run->Worker.GetOutput(), run->Worker.GetProcess()})
            waited.push_back({descriptor, POLLIN, 0});
    const bool hasEnded = std::ranges::any_of(m_runs, [](const auto& run) { return run->Worker.GetProcess() < 0; });
    const auto pause = hasEnded ? 0ms : GetPause(atMost);
    const timespec time {pause.count() / 1000, pause.count() % 1000 * 1'000'000};
    // Signals that are kept back elsewhere end the pause.
    sigset_t none;
    sigemptyset(&none);
    ppoll(waited.data(), waited.size(), &time, &none);
    size_t index = 0;
    for (const auto& run : m_runs)
    {
        if (waited[index].revents != 0)
            run->Worker.ReadOutput();
        index += 2;
    }
    EnforceLimits();
    EndRuns();
}

std::chrono::milliseconds CWorkerPool::GetPause(std::chrono::milliseconds atMost) const
{
    const auto now = CWorkerRun::Clock::now();
    auto pause = atMost;
    const auto shorten = [&](CWorkerRun::Clock::time_point end) {
        pause =
            std::min(pause, std::chrono::ceil<std::chrono::milliseconds>(std::max(end - now, CWorkerRun::Clock::duration {})));
    };
    for (const auto& run : m_runs)
        shorten(run->Worker.GetDeadline());
    if (!m_runs.empty())
        shorten(std::max(m_nextCheck, now));
    return pause;
}

void CWorkerPool::EnforceLimits()
{
    const auto now = CWorkerRun::Clock::now();
    const bool isTime = now >= m_nextCheck;
    if (isTime)
        m_nextCheck = now + CheckInterval;
    for (const auto& run : m_runs)
        if (isTime || now >= run->Worker.GetDeadline())
            run->Worker.EnforceLimits(now);
}

// The functions may start others, which come after those that have ended.
void CWorkerPool::EndRuns()
{
    std::list<std::unique_ptr<Run>> ended;
    for (auto run = m_runs.begin(); run != m_runs.end();)
    {
        const auto next = std::next(run);
        if ((*run)->Worker.HasEnded())
            ended.splice(ended.end(), m_runs, run);
        run = next;
    }
    for (const auto& run : ended)
        run->OnEnd(run->Worker.TakeOutcome(), run->Worker.GetRequest());
}
