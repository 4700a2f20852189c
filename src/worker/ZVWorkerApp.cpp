#include "worker/ZVWorkerApp.h"

#include "core/property/ZVPropertyMap.h"
#include "system/library/ZVSiblingLibraries.h"
#include "system/library/ZVStandardOutput.h"
#include "system/log/ZVElapsedTime.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"
#include "worker/ZVAppleProjects.h"
#include "worker/ZVSourceCleaner.h"
#include "worker/ZVTaskShield.h"
#include "worker/ZVWorkerCommand.h"

bool g_bVideoTask = false;

namespace
{
constexpr int32_t Succeeded = 0;
constexpr int32_t Failed = -1;

// It names commands of another platform and leaves out most of this one's. Callers know it so, and it stays.
constexpr const wchar_t* UsageText[] = {
    L"Example usage:\n",
    L"Example thumbnail: ZVWorker.exe /Thumbnail \"c:\\Video.mpg\" \"c:\\Video Thumb.png\" \"c:\\Metadata.xml\" 5000\n",
    L"Example analyze: ZVWorker.exe /AnalyzeDX \"c:\\Video.mpg\" \"c:\\Video.xml\"\n",
    L"Example analyze: ZVWorker.exe /AnalyzeRP \"c:\\Video.rv\" \"c:\\Video.xml\" \"c:\\RPFailureCount.xml\"\n",
    L"Example device analysis: ZVWorker.exe /AnalyzeDevices \"c:\\InputVariables.xml\" \"c:\\Devices.xml\"\n",
    L"Example enumerate source filters: ZVWorker.exe /EnumSourceFilters \"c:\\FilterList.xml\"\n",
    L"Example enumerate DSP filters: ZVWorker.exe /EnumDSPFilters \"c:\\FilterList.xml\"\n",
};

// The parameters of all commands whose result the dispatcher writes.
constexpr int32_t InputParameter = 0;
constexpr int32_t ResultParameter = 1;

// A caller that confuses its parameters does not lose a film.
bool RefuseOverwriting(const ZVWorkerCommand& command, const ZVWorkerRequest& request)
{
    const ZVString result = request.Match.GetPath(ResultParameter);
    if (command.Form == ZVResultForm::None || !WouldReplace(result, request.Match.GetPath(InputParameter)))
        return false;
    request.Scope.Log("The result would take the place of the input: %s", result);
    return true;
}

int32_t RunCommand(const ZVWorkerCommand& command, const ZVWorkerRequest& request)
{
    if (command.StartText != nullptr)
        request.Scope.Log(command.StartText);
    if (command.IsVideoTask)
        g_bVideoTask = true;
    if (RefuseOverwriting(command, request))
        return Failed;
    ZVTaskShield shield(command, request);
    if (!shield.Lock())
        return Failed;
    ZVPropertyMap result;
    if (!command.Task(request, result))
        return Failed;
    if (command.SuccessText != nullptr)
        request.Scope.Log(command.SuccessText);
    if (command.Form != ZVResultForm::None && !WriteResult(result, request.Match.GetPath(ResultParameter), command.Form))
        return Failed;
    return command.AlwaysFails ? Failed : Succeeded;
}

int32_t RefuseCommand(const ZVCommandLine& commandLine, const ZVLogScope& scope)
{
    const ZVString joined = commandLine.GetJoined(0);
    scope.Log("Unknown command '%s'", joined);
    ZVStandardOutput::PrintFormat(L"Unknown command '%s'\n\n", joined);
    for (const wchar_t* line : UsageText)
        ZVStandardOutput::Print(line);
    return Failed;
}

int32_t Dispatch(const ZVCommandLine& commandLine, const ZVLogScope& scope)
{
    ZVCommandMatch match;
    for (const ZVWorkerCommand& command : GetWorkerCommands())
        if (commandLine.Match(command.Name, &match, command.MinimumParameters))
            return RunCommand(command, {match, commandLine, scope});
    return RefuseCommand(commandLine, scope);
}
}

bool ZVWorkerApp::Initialize()
{
    return ZVExecutableApp::Initialize();
}

bool ZVWorkerApp::Uninitialize()
{
    return ZVExecutableApp::Uninitialize();
}

bool ZVWorkerApp::InstallSignalPolicy()
{
    return ZVExecutableApp::InstallSignalPolicy();
}

bool ZVWorkerApp::Process()
{
    const ZVCommandLine commandLine = CommandLine;
    ExitCode = ProcessCommand(commandLine);
    ZVSiblingLibraries::Get().UnloadAll();
    OnProcessEnd();
    g_bExitRequested = 1;
    return true;
}

int32_t ZVWorkerApp::ProcessCommand(const ZVCommandLine& commandLine)
{
    ZVLogScope scope(ZVLogCategory::General, "ZVWorker::ProcessCommand", true);
    const ZVElapsedTime elapsedTime;
    const int32_t result = Dispatch(commandLine, scope);
    const int32_t elapsed = elapsedTime.GetMilliseconds();
    ZVStandardOutput::PrintFormat(L"Total time: %d ms\n", elapsed);
    ZVStandardOutput::PrintFormat(L"Result: %d\n", result);
    scope.Log("Task completed in %d ms, result = %d", elapsed, result);
    return result;
}

void ZVWorkerApp::CleanCode()
{
    CleanSources(SourceFolder);
}

void ZVWorkerApp::UpdateAppleProjects()
{
    UpdateBuildSettings(AppleProjectsFolder);
}
