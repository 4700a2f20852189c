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

// How the standard output of a run is given to it.
enum class OutputKind
{
    Pipe,
    File,
    Closed,
};

// Runs the worker with arguments and environment settings ("NAME=value", on top of a bare environment) and waits for its end. It
// starts with SIGCHLD ignored, as a careless caller leaves it. The program is ZV_WORKER_PROGRAM of the environment, or the one of
// this build.
WorkerRun RunWorker(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {},
                    OutputKind output = OutputKind::Pipe);

// The path of the worker that RunWorker runs.
std::string GetWorkerProgram();
