#include "RatioReport.h"

#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
// Starts a program with its standard output thrown away and waits for its end.
void RunProgram(benchmark::State& state, const char* program, const char* argument)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    char* arguments[] = {const_cast<char*>(program), const_cast<char*>(argument), nullptr};
    for (auto _ : state)
    {
        pid_t child = 0;
        if (posix_spawn(&child, program, &actions, nullptr, arguments, environ) != 0)
        {
            state.SkipWithError("the program cannot be started");
            break;
        }
        int status = 0;
        waitpid(child, &status, 0);
    }
    posix_spawn_file_actions_destroy(&actions);
}

void StartWorker(benchmark::State& state)
{
    RunProgram(state, ZV_WORKER_PROGRAM, "/Test");
}

void StartTrue(benchmark::State& state)
{
    RunProgram(state, "/bin/true", nullptr);
}

ZV_COMPARE(WorkerTest, 3.0, StartWorker, StartTrue, "/bin/true");
}
