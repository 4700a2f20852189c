#include "worker/ZVWorkerApp.h"

#include "system/library/ZVSiblingLibraries.h"
#include "system/library/ZVStandardOutput.h"
#include "system/log/ZVElapsedTime.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"
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

int32_t RunCommand(const ZVWorkerCommand& command, const ZVWorkerRequest& request)
{
    if (command.StartText != nullptr)
        request.Scope.Log(command.StartText);
    if (command.IsVideoTask)
        g_bVideoTask = true;
    const bool succeeded = command.Task(request);
    if (succeeded && command.SuccessText != nullptr)
        request.Scope.Log(command.SuccessText);
    return succeeded && !command.AlwaysFails ? Succeeded : Failed;
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
    // A library that breaks while it is unloaded does not take the report with it.
    ZVStandardOutput::Flush();
    scope.Log("Task completed in %d ms, result = %d", elapsed, result);
    return result;
}
