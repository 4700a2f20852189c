// Times whole commands against each other, one after the other in many rounds, so that whatever else the machine does meets all of them.
//
//   RunInterleaved ROUNDS -- COMMAND [ARGUMENTS...] [-- COMMAND [ARGUMENTS...]]...
//
// Prints a line for each command: its median time in milliseconds, the median of its time divided by that of the first command in the same
// round, and the median of its peak memory in kilobytes. Output of the commands is thrown away. A command that fails ends the program with 1.

#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char** environ;

enum
{
    MaximumCommands = 16,
    MaximumRounds = 1000,
};

struct Command
{
    char** Arguments;
    double Milliseconds[MaximumRounds];
    double Ratios[MaximumRounds];
    double PeakKilobytes[MaximumRounds];
};

static struct Command s_commands[MaximumCommands];

static double Now(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (double)now.tv_sec * 1e3 + (double)now.tv_nsec / 1e6;
}

static int CompareNumbers(const void* first, const void* second)
{
    const double difference = *(const double*)first - *(const double*)second;
    return difference < 0 ? -1 : difference > 0;
}

static double Median(double* values, int count)
{
    qsort(values, (size_t)count, sizeof *values, CompareNumbers);
    return (values[(count - 1) / 2] + values[count / 2]) / 2;
}

static void Run(struct Command* command, int round, const posix_spawn_file_actions_t* actions)
{
    const double start = Now();
    pid_t child = 0;
    int status = -1;
    struct rusage usage;
    if (posix_spawnp(&child, command->Arguments[0], actions, NULL, command->Arguments, environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || status != 0)
    {
        fprintf(stderr, "RunInterleaved: this command fails with status %d: %s\n", status, command->Arguments[0]);
        exit(1);
    }
    command->Milliseconds[round] = Now() - start;
    command->PeakKilobytes[round] = (double)usage.ru_maxrss;
}

// Splits the arguments at "--", which end up as the ends of the commands' own lists.
static int TakeCommands(char** arguments)
{
    int count = 0;
    for (; *arguments != NULL; ++arguments)
    {
        if (strcmp(*arguments, "--") != 0)
            continue;
        *arguments = NULL;
        if (arguments[1] == NULL || count == MaximumCommands)
            return 0;
        s_commands[count++].Arguments = arguments + 1;
    }
    return count;
}

int main(int argc, char** argv)
{
    const int rounds = argc > 2 ? atoi(argv[1]) : 0;
    const int count = rounds < 1 || rounds > MaximumRounds || strcmp(argv[2], "--") != 0 ? 0 : TakeCommands(argv + 2);
    if (count == 0)
    {
        fprintf(stderr, "usage: RunInterleaved ROUNDS -- COMMAND [ARGUMENTS...] [-- COMMAND [ARGUMENTS...]]...\n");
        return 1;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    // A round that does not count brings the files into the system's cache. The order turns around with every round.
    for (int index = 0; index < count; ++index)
        Run(&s_commands[index], 0, &actions);
    for (int round = 0; round < rounds; ++round)
    {
        for (int place = 0; place < count; ++place)
            Run(&s_commands[round % 2 == 0 ? place : count - 1 - place], round, &actions);
        for (int index = 0; index < count; ++index)
            s_commands[index].Ratios[round] = s_commands[index].Milliseconds[round] / s_commands[0].Milliseconds[round];
    }
    posix_spawn_file_actions_destroy(&actions);

    for (int index = 0; index < count; ++index)
    {
        struct Command* const command = &s_commands[index];
        printf("%.3f %.4f %.0f\n", Median(command->Milliseconds, rounds), Median(command->Ratios, rounds),
               Median(command->PeakKilobytes, rounds));
    }
    return 0;
}
