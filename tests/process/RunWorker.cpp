#include "RunWorker.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
std::vector<char*> AsPointers(const std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

std::string ReadAll(int descriptor)
{
    std::string text;
    char block[4096];
    for (ssize_t size = read(descriptor, block, sizeof block); size > 0; size = read(descriptor, block, sizeof block))
        text.append(block, static_cast<size_t>(size));
    close(descriptor);
    return text;
}
}

std::string GetWorkerProgram()
{
    const char* fromEnvironment = getenv("ZV_WORKER_PROGRAM");
    return fromEnvironment != nullptr ? fromEnvironment : ZV_WORKER_PROGRAM;
}

WorkerRun RunWorker(const std::vector<std::string>& arguments, const std::vector<std::string>& environment, bool hasOutput)
{
    const std::string program = GetWorkerProgram();
    std::vector<std::string> commandLine = {program};
    commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings = environment;
    for (const char* name : {"PATH", "ZV_DATA_DIR", "ASAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char* value = getenv(name))
            settings.push_back(std::string(name) + "=" + value);

    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0)
        return {};
    const int errors = memfd_create("worker-errors", MFD_CLOEXEC);
    const std::vector<char*> argv = AsPointers(commandLine);
    const std::vector<char*> envp = AsPointers(settings);
    const pid_t child = fork();
    if (child == 0)
    {
        dup2(errors, STDERR_FILENO);
        if (hasOutput)
            dup2(pipeEnds[1], STDOUT_FILENO);
        else
            close(STDOUT_FILENO);
        signal(SIGCHLD, SIG_IGN);
        execve(program.c_str(), argv.data(), envp.data());
        _exit(127);
    }
    close(pipeEnds[1]);
    WorkerRun run;
    run.Output = ReadAll(pipeEnds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    run.Status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    lseek(errors, 0, SEEK_SET);
    run.Error = ReadAll(errors);
    return run;
}
