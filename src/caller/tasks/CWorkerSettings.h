#pragma once

#include <chrono>
#include <cstdint>
#include <string>

// How workers are run, whatever they do.
struct CWorkerSettings
{
    std::string Program;
    size_t Jobs = 1;  // workers at a time
    std::chrono::milliseconds TimeLimit {60'000};
    std::chrono::milliseconds BarsTimeLimit {300'000};
    uint64_t MemoryLimit = uint64_t {2} << 30;  // in bytes
};

// The worker beside this program, where both are installed.
std::string FindWorker();
