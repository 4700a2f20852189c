#pragma once

#include "WorkFolder.h"

#include <csignal>
#include <functional>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// What came of a run of the real worker.
struct WorkerRun
{
    int Status = -1;  // the exit status, or 128 and the signal that ended it
    std::string Output;
    std::string Error;
};

// The path of the worker that RunWorker runs.
inline std::string GetWorkerProgram()
{
    const char* fromEnvironment = getenv("ZV_WORKER_PROGRAM");
    return fromEnvironment != nullptr ? fromEnvironment : ZV_WORKER_PROGRAM;
}

// Runs the worker with arguments and environment settings ("NAME=value", on top of a bare environment) and waits for its end. Its
// standard output is a file. It starts with SIGCHLD ignored, as a careless caller leaves it, and with what a function changes in the
// new process. The program is ZV_WORKER_PROGRAM of the environment, or the one of this build.
inline WorkerRun RunWorker(
    std::vector<std::string> arguments, std::vector<std::string> settings = {}, const std::function<void()>& prepare = [] {})
{
    const std::string program = GetWorkerProgram();
    arguments.insert(arguments.begin(), program);
    for (const char* name : {"PATH", "ZV_DATA_DIR", "ZV_SHIELD", "ASAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char* value = getenv(name))
            settings.push_back(std::string(name) + "=" + value);
    const auto asPointers = [](std::vector<std::string>& texts)
    {
        std::vector<char*> pointers;
        for (std::string& text : texts)
            pointers.push_back(text.data());
        pointers.push_back(nullptr);
        return pointers;
    };
    const std::vector<char*> argv = asPointers(arguments);
    const std::vector<char*> envp = asPointers(settings);
    // Files without a name.
    const int output = memfd_create("worker-output", MFD_CLOEXEC);
    const int errors = memfd_create("worker-errors", MFD_CLOEXEC);
    const pid_t child = fork();
    if (child == 0)
    {
        dup2(errors, STDERR_FILENO);
        dup2(output, STDOUT_FILENO);
        signal(SIGCHLD, SIG_IGN);
        prepare();
        execve(program.c_str(), argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const auto readAll = [](int file)
    {
        const std::string text = WorkFolder::Read("/proc/self/fd/" + std::to_string(file));
        close(file);
        return text;
    };
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readAll(output), readAll(errors)};
}
