#include "worker/ZVWorkerCommand.h"

#include "worker/ZVDevicesTask.h"
#include "worker/ZVMonitorTask.h"
#include "worker/ZVThumbnailTask.h"
#include "worker/ZVVideoTasks.h"
#include "worker/ZVWorkerApp.h"

namespace
{
bool CleanCode(const ZVWorkerRequest&, ZVPropertyMap&)
{
    ZVWorkerApp::CleanCode();
    return true;
}

bool UpdateAppleProjects(const ZVWorkerRequest&, ZVPropertyMap&)
{
    ZVWorkerApp::UpdateAppleProjects();
    return true;
}

// Shows the caller that the worker starts, reports and ends.
bool Test(const ZVWorkerRequest&, ZVPropertyMap&)
{
    return true;
}

using enum ZVResultForm;
using enum ZVTaskNeeds;

// clang-format off
constexpr ZVWorkerCommand Commands[] = {
    // Name,                    parameters, video, always fails, result, needs, task, texts of the log
    {L"/Thumbnail",             2, true,  false, None,   ReadsFilm | WritesPicture,              RunThumbnailTask,
     "Processing Thumbnail task...",             "Thumbnailing succeeded"},
    {L"/AnalyzeZVVid",          2, true,  false, UTF8,   ReadsFilm | WritesResult | WritesCover, RunAnalyzeZVVidTask,
     "Processing AnalyzeZVVid task...",          "AnalyzeZVVid succeeded..."},
    {L"/AnalyzeVideoExtended",  2, true,  false, UTF8,   ReadsFilm | WritesResult,               RunAnalyzeVideoExtendedTask,
     "Processing AnalyzeVideoExtended task...",  "AnalyzeVideoExtended succeeded..."},
    {L"/AnalyzeVideoBlackBars", 2, true,  false, UTF8,   ReadsFilm | WritesResult,               RunAnalyzeVideoBlackBarsTask,
     "Processing AnalyzeVideoBlackBars task...", "AnalyzeVideoBlackBars succeeded..."},
    {L"/AnalyzeDevices",        2, false, false, Narrow, ReadsFile | WritesResult,               RunDevicesTask,
     "Processing AnalyzeDevices task..."},
    {L"/CleanCode",             0, false, true,  None,   ChangesSources,                         CleanCode},
    {L"/UpdateAppleProjects",   0, false, true,  None,   ChangesSources,                         UpdateAppleProjects},
    {L"/GetMonitorRect",        2, false, true,  None,   AsksDisplay | WritesResult,             RunMonitorTask},
    {L"/Test",                  0, false, true,  None,   Nothing,                                Test},
};
// clang-format on
}

std::span<const ZVWorkerCommand> GetWorkerCommands()
{
    return Commands;
}
