#include "worker/ZVWorkerCommand.h"

#include "system/log/ZVLogScope.h"

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
    // Name,                    parameters, video, always fails
    {L"/Thumbnail",             2,          true,  false, "Processing Thumbnail task...",             "Thumbnailing succeeded",               RefuseTask},
    {L"/AnalyzeZVVid",          2,          true,  false, "Processing AnalyzeZVVid task...",          "AnalyzeZVVid succeeded...",            RefuseTask},
    {L"/AnalyzeVideoExtended",  2,          true,  false, "Processing AnalyzeVideoExtended task...",  "AnalyzeVideoExtended succeeded...",    RefuseTask},
    {L"/AnalyzeVideoBlackBars", 2,          true,  false, "Processing AnalyzeVideoBlackBars task...", "AnalyzeVideoBlackBars succeeded...",   RefuseTask},
    {L"/AnalyzeDevices",        2,          false, false, "Processing AnalyzeDevices task...",        nullptr,                                RefuseTask},
    {L"/CleanCode",             0,          false, true,  nullptr,                                    nullptr,                                RefuseTask},
    {L"/UpdateAppleProjects",   0,          false, true,  nullptr,                                    nullptr,                                RefuseTask},
    {L"/GetMonitorRect",        2,          false, true,  nullptr,                                    nullptr,                                RefuseTask},
    {L"/Test",                  0,          false, true,  nullptr,                                    nullptr,                                Test},
};
// clang-format on
}

std::span<const ZVWorkerCommand> GetWorkerCommands()
{
    return Commands;
}
