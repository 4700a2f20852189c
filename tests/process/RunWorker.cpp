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

// A file in memory, read from its start once the child has ended.
class MemoryFile
{
public:
    MemoryFile() : m_descriptor(memfd_create("worker-output", MFD_CLOEXEC)) {}

    int Get() const { return m_descriptor; }
    std::string TakeContent()
    {
        lseek(m_descriptor, 0, SEEK_SET);
        return ReadAll(m_descriptor);
    }

private:
    int m_descriptor;
};
}

std::string GetWorkerProgram()
{
    const char* fromEnvironment = getenv("ZV_WORKER_PROGRAM");
    return fromEnvironment != nullptr ? fromEnvironment : ZV_WORKER_PROGRAM;
}

WorkerRun RunWorker(const std::vector<std::string>& arguments, const std::vector<std::string>& environment, OutputKind output)
{
    const std::string program = GetWorkerProgram();
    std::vector<std::string> commandLine = {program};
    commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings = environment;
    for (const char* name : {"PATH", "ZV_DATA_DIR", "ASAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char* value = getenv(name))
            settings.push_back(std::string(name) + "=" + value);

    MemoryFile errorFile;
    MemoryFile outputFile;
    int pipeEnds[2] = {-1, -1};
    if (output == OutputKind::Pipe && pipe2(pipeEnds, O_CLOEXEC) != 0)
        return {};
    const std::vector<char*> argv = AsPointers(commandLine);
    const std::vector<char*> envp = AsPointers(settings);
    const pid_t child = fork();
    if (child == 0)
    {
        dup2(errorFile.Get(), STDERR_FILENO);
        if (output == OutputKind::Closed)
            close(STDOUT_FILENO);
        else
            dup2(output == OutputKind::Pipe ? pipeEnds[1] : outputFile.Get(), STDOUT_FILENO);
        signal(SIGCHLD, SIG_IGN);
        execve(program.c_str(), argv.data(), envp.data());
        _exit(127);
    }
    WorkerRun run;
    if (output == OutputKind::Pipe)
    {
        close(pipeEnds[1]);
        run.Output = ReadAll(pipeEnds[0]);
    }
    int status = 0;
    waitpid(child, &status, 0);
    run.Status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.Error = errorFile.TakeContent();
    if (const std::string written = outputFile.TakeContent(); output == OutputKind::File)
        run.Output = written;
    return run;
}
