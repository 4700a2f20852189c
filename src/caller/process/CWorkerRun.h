#pragma once

#include "caller/files/CDescriptor.h"
#include "caller/process/CWorkerOutcome.h"

#include <optional>
#include <sys/types.h>

// One worker at work, as a process group of its own. It is killed with the object, and by the system when this process dies.
class CWorkerRun
{
public:
    using Clock = std::chrono::steady_clock;

    // Starts the program. One that cannot be started is a run that ends at once.
    CWorkerRun(const std::string& program, CWorkerRequest request);
    CWorkerRun(const CWorkerRun&) = delete;
    CWorkerRun& operator=(const CWorkerRun&) = delete;
    ~CWorkerRun();

    // What becomes readable when the worker printed something, and when it ended; -1 once neither will come.
    int GetOutput() const { return m_output.Get(); }
    int GetProcess() const { return m_process.Get(); }
    Clock::time_point GetDeadline() const { return m_deadline; }

    // Takes what was printed.
    void ReadOutput();
    // Kills the worker if it is over one of its limits.
    void EnforceLimits(Clock::time_point now);
    // Kills the worker, whose run then ends for that reason.
    void Kill(CWorkerOutcome::End reason);
    // Whether the worker has ended, as the system told last.
    bool HasEnded();
    // What came of it, once it has ended.
    CWorkerOutcome TakeOutcome();

    const CWorkerRequest& GetRequest() const { return m_request; }

private:
    void Start(const std::string& program);
    uint64_t GetMemory() const;

    CWorkerRequest m_request;
    pid_t m_pid = 0;
    CDescriptor m_process;
    CDescriptor m_output;
    Clock::time_point m_deadline;
    std::optional<CWorkerOutcome::End> m_killedFor;
    bool m_hasEnded = false;
    CWorkerOutcome m_outcome;
};
