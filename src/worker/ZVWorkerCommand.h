#pragma once

#include "worker/ZVCommandLine.h"
#include "worker/ZVResultFile.h"
#include "worker/ZVTaskNeeds.h"

#include <cstdint>
#include <span>

class ZVLogScope;
class ZVPropertyMap;

// What a task gets: its parameters, the whole argument list for the one command that counts from its start, and the scope to log
// under.
struct ZVWorkerRequest
{
    const ZVCommandMatch& Match;
    const ZVCommandLine& CommandLine;
    const ZVLogScope& Scope;
};

// One command of the worker.
struct ZVWorkerCommand
{
    const wchar_t* Name;
    int32_t MinimumParameters;  // arguments that must follow for the command to match at all
    bool IsVideoTask;
    bool AlwaysFails;   // the caller of such a command looks at the files it wrote, not at the status
    ZVResultForm Form;  // of the file that parameter 1 names
    ZVTaskNeeds Needs;  // what it reaches; the process is locked in with that before the task begins
    // Does the work and fills the result, or returns false.
    bool (*Task)(const ZVWorkerRequest& request, ZVPropertyMap& result);
    const char* StartText = nullptr;    // logged before the task, or null
    const char* SuccessText = nullptr;  // logged after a task that succeeded, or null
};

// All commands in the order in which they are tried.
std::span<const ZVWorkerCommand> GetWorkerCommands();
