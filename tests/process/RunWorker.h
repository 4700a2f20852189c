#pragma once

#include <string>
#include <vector>

// What a run of the real worker left behind.
struct WorkerRun
{
    int Status = -1;  // the exit status, or 128 and the signal that ended it
    std::string Output;
    std::string Error;
};

// Runs the worker with arguments and environment settings ("NAME=value", on top of a bare environment) and waits for its end. Its
// standard output is a pipe, or closed. It starts with SIGCHLD ignored, as a careless caller leaves it. The program is
// ZV_WORKER_PROGRAM of the environment, or the one of this build.
WorkerRun RunWorker(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {},
                    bool hasOutput = true);

// The path of the worker that RunWorker runs.
std::string GetWorkerProgram();
