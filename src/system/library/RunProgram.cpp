#include "system/library/RunProgram.h"

#include "core/containers/ZVBuffer.h"
#include "core/string/ZVStringUTF8.h"
#include "system/library/ZVNativeBytes.h"
#include "system/log/ZVLogScope.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"RunProgram"};

constexpr int32_t UnknownExitCode = -1;

// A shell adds this to the number of the signal that ended a program.
constexpr int32_t SignalExitCode = 128;
// And this it says of a program that cannot be found or run.
constexpr int32_t NoProgramExitCode = 127;

constexpr int PieceSize = 1024;

// A command line in the form that the system takes. It must be complete before the process forks.
class ArgumentVector
{
public:
    ArgumentVector(const ZVString& program, const ZVStringArray& parameters)
    {
        Add(program);
        for (int32_t index = 0; index < parameters.GetCount(); ++index)
            Add(parameters[index]);
        m_pointers.push_back(nullptr);
    }

    char* const* Get() const { return m_pointers.data(); }

private:
    void Add(const ZVString& argument) { m_pointers.push_back(m_texts.emplace_back(ZVNativeBytes(argument).GetBytes()).data()); }

    std::deque<std::string> m_texts;
    std::vector<char*> m_pointers;
};

// Waits for the program of a stream that an exception leaves open.
struct StreamEnd
{
    void operator()(FILE* stream) const { pclose(stream); }
};

int32_t ToExitCode(int status)
{
    if (status == -1)
        return UnknownExitCode;
    return WIFSIGNALED(status) ? SignalExitCode + WTERMSIG(status) : WEXITSTATUS(status);
}

// Reads a program's output to its end, so that the program never waits for a reader. It is decoded as a whole, because a piece
// may end inside a character.
void ReadOutput(FILE* stream, ZVString* output)
{
    ZVBuffer bytes;
    char piece[PieceSize];
    for (;;)
    {
        if (fgets(piece, PieceSize, stream) != nullptr)
        {
            if (output != nullptr)
                bytes.Append(piece, static_cast<int64_t>(strlen(piece)));
        }
        else if (ferror(stream) != 0 && errno == EINTR)
            clearerr(stream);
        else
            break;
    }
    if (output != nullptr)
        output->SetFromUTF8(reinterpret_cast<const char*>(bytes.GetData()),
                            static_cast<int32_t>(std::min<int64_t>(bytes.GetUsed(), INT32_MAX)));
}

// The child is not waited for. Its entry stays in the system's process table until this process ends, which a worker does soon.
bool RunNonBlocking(const ZVString& program, const ZVStringArray& parameters)
{
    Source.Log("Running non-blocking command: %s / Parameters: %s", program, parameters.GetJoined(L" "));
    const ArgumentVector arguments(program, parameters);
    const pid_t child = fork();
    if (child == 0)
    {
        // Between fork and exec the locks of other threads may stay held for ever, so nothing else is called here.
        execvp(arguments.Get()[0], arguments.Get());
        _exit(1);
    }
    if (child == -1)
        Source.Log("Failed to fork!");
    return child != -1;
}

bool RunBlocking(const ZVString& program, const ZVStringArray& parameters, ZVString* output, int32_t* exitCode)
{
    const ZVString commandLine = ZVFormat(L"%s %s", program, parameters.GetJoined(L" "));
    Source.Log("Running blocking command via popen: %s", commandLine);
    std::unique_ptr<FILE, StreamEnd> stream(popen(ZVStringUTF8(commandLine), "r"));
    if (stream == nullptr)
    {
        Source.Log("Failed to start the shell: %s", strerror(errno));
        return false;
    }
    ReadOutput(stream.get(), output);
    const int32_t code = ToExitCode(pclose(stream.release()));
    if (exitCode != nullptr)
        *exitCode = code;
    return true;
}

// Where the program's standard output goes: it must not get into the report.
class ToStandardError
{
public:
    ToStandardError()
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, STDERR_FILENO, STDOUT_FILENO);
    }
    ~ToStandardError() { posix_spawn_file_actions_destroy(&m_actions); }
    ToStandardError(const ToStandardError&) = delete;
    ToStandardError& operator=(const ToStandardError&) = delete;

    const posix_spawn_file_actions_t* Get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

bool RunDirectly(const ZVString& program, const ZVStringArray& parameters, int32_t* exitCode)
{
    Source.Log("Running blocking command without a shell: %s %s", program, parameters.GetJoined(L" "));
    const ArgumentVector arguments(program, parameters);
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments.Get()[0], ToStandardError().Get(), nullptr, arguments.Get(), environ);
    int status = -1;
    if (error != 0)
        Source.Log("%s cannot be started: %s", program, strerror(error));
    else
        while (waitpid(child, &status, 0) == -1 && errno == EINTR)
            continue;
    if (exitCode != nullptr)
        *exitCode = error != 0 ? NoProgramExitCode : ToExitCode(status);
    return error == 0 || error == ENOENT || error == EACCES;
}
}

bool RunProgram(const ZVString& program, const ZVStringArray& parameters, ZVString* output, ZVRunMode mode, int32_t* exitCode)
{
    const ZVLogScope scope(Source, true);
    if (exitCode != nullptr)
        *exitCode = UnknownExitCode;
    if (program.IsEmpty())
        return false;
    if (mode == ZVRunMode::NonBlocking)
        return RunNonBlocking(program, parameters);
    if (mode == ZVRunMode::Direct)
        return RunDirectly(program, parameters, exitCode);
    return RunBlocking(program, parameters, output, exitCode);
}
