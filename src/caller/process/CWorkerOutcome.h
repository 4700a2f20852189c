#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// A run of the worker that is to be made.
struct CWorkerRequest
{
    std::vector<std::string> Arguments;  // the command and its parameters, as bytes
    std::filesystem::path LogFile = {};  // which the worker writes
    std::string Program = {};            // another program that is run with the worker's limits; empty for the worker itself
    std::chrono::milliseconds TimeLimit {60'000};
    uint64_t MemoryLimit = uint64_t {2} << 30;  // in bytes that are in memory at once
};

// What came of a run.
struct CWorkerOutcome
{
    enum class End
    {
        Exited,         // Number is the exit status
        Crashed,        // Number is the signal
        TooLong,        // killed at its time limit
        TooMuchMemory,  // killed at its memory limit
        NotStarted,     // Number is the system's reason
    };

    bool HasEndedWell() const { return How == End::Exited && Number == 0; }
    // A worker that did not begin, since a library of its own is missing, ends with 0 too, but without a report.
    bool HasSucceeded() const { return HasEndedWell() && Report.find("\nResult: 0\n") != std::string::npos; }

    End How = End::NotStarted;
    int Number = 0;
    std::string Report = {};                     // what it printed, of which the end is kept
    std::string Log = {};                        // the lines of its log, of which the end is kept
    std::chrono::microseconds ProcessorTime {};  // of the worker and all that it started
};

// What the last lines of a log say beside what every run says, each once and parted by semicolons: the worker's own first, then those of
// the codec libraries.
std::string GetReasons(const std::string& log);

// Why a run failed, in words: how it ended and what its log says. Empty if it succeeded.
std::string GetFailure(const CWorkerOutcome& outcome, const CWorkerRequest& request);
