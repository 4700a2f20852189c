#pragma once

#include <chrono>
#include <cstdint>
#include <string>

// How all commands of the program end.
enum ExitStatus
{
    AllDone = 0,
    SomeFailed = 1,
    WrongUse = 2,
    Interrupted = 130,
};

// What all commands that start workers take.
struct CCallerOptions
{
    std::string Worker;  // the program
    bool AsJSON = false;
    std::chrono::seconds TimeLimit {60};
    std::chrono::seconds BarsTimeLimit {300};
    uint64_t MemoryLimit = uint64_t {2} << 30;  // in bytes
};

// The worker beside this program, or the one that is installed.
std::string FindWorker();
