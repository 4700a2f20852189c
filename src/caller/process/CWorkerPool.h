#pragma once

#include "caller/process/CWorkerRun.h"

#include <functional>
#include <list>
#include <memory>

// Runs workers, some at a time, and watches their limits. One thread uses it, and everything happens in its calls.
class CWorkerPool
{
public:
    using EndFunction = std::function<void(const CWorkerOutcome& outcome, const CWorkerRequest& request)>;

    // The program is the worker.
    CWorkerPool(std::string program, size_t jobs);
    // Kills the workers that still run.
    ~CWorkerPool();

    size_t GetRunningCount() const { return m_runs.size(); }
    bool HasRoom() const { return m_runs.size() < m_jobs; }
    // Starts a worker, also when there is no room; the function is called by Wait when it has ended, and may start another.
    void Start(CWorkerRequest request, EndFunction onEnd);
    // Waits until a worker ends, the time is over, or a signal comes, and calls the functions of those that have ended.
    void Wait(std::chrono::milliseconds atMost);

private:
    struct Run
    {
        EndFunction OnEnd;  // which may own files that the worker uses until it is killed
        CWorkerRun Worker;
    };

    std::chrono::milliseconds GetPause(std::chrono::milliseconds atMost) const;
    void EnforceLimits();
    void EndRuns();

    std::string m_program;
    size_t m_jobs;
    std::list<std::unique_ptr<Run>> m_runs;
    CWorkerRun::Clock::time_point m_nextCheck {};
};
