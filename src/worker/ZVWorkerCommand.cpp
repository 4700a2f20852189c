#include "worker/ZVWorkerCommand.h"

#include "system/log/ZVLogScope.h"
#include "worker/ZVDevicesTask.h"
#include "worker/ZVVideoTasks.h"

namespace
{
// The task of a command that this worker does not carry.
bool RefuseTask(const ZVWorkerRequest& request)
{
    request.Scope.Log("This worker does not carry the task of '%s'", request.Match.Command);
    return false;
}

// Shows the caller that the worker starts, reports and ends.
bool Test(const ZVWorkerRequest&)
{
    return true;
}

// clang-format off
constexpr ZVWorkerCommand Commands[] = {
    // Name,                    parameters, video, always fails, task, texts of the log
    {L"/Thumbnail",             2, true,  false, RefuseTask,
     "Processing Thumbnail task...",             "Thumbnailing succeeded"},
    {L"/AnalyzeZVVid",          2, true,  false, RefuseTask,
     "Processing AnalyzeZVVid task...",          "AnalyzeZVVid succeeded..."},
    {L"/AnalyzeVideoExtended",  2, true,  false, RunAnalyzeVideoExtendedTask,
     "Processing AnalyzeVideoExtended task...",  "AnalyzeVideoExtended succeeded..."},
    {L"/AnalyzeVideoBlackBars", 2, true,  false, RefuseTask,
     "Processing AnalyzeVideoBlackBars task...", "AnalyzeVideoBlackBars succeeded..."},
    {L"/AnalyzeDevices",        2, false, false, RunDevicesTask,
     "Processing AnalyzeDevices task..."},
    {L"/CleanCode",             0, false, true,  RefuseTask},
    {L"/UpdateAppleProjects",   0, false, true,  RefuseTask},
    {L"/GetMonitorRect",        2, false, true,  RefuseTask},
    {L"/Test",                  0, false, true,  Test},
};
// clang-format on
}

std::span<const ZVWorkerCommand> GetWorkerCommands()
{
    return Commands;
}
