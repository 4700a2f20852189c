#pragma once

#include "worker/ZVExecutableApp.h"

// True once the process has begun a video task: a marker for whoever looks at it from outside.
extern bool g_bVideoTask;

// The worker: one command, one task, one report.
class ZVWorkerApp final : public ZVExecutableApp
{
public:
    bool Initialize() override;
    bool Uninitialize() override;
    // Runs the command of the command line, keeps its result as the exit value and unloads the product's libraries.
    bool Process() override;
    bool InstallSignalPolicy() override;

    // Runs the task of the first command of the table that matches, and prints the report, which ends every run. Returns 0 when
    // the task succeeded and its result was written, and -1 otherwise.
    int32_t ProcessCommand(const ZVCommandLine& commandLine);

    // Where the sources stand on the developers' machines.
    static constexpr wchar_t SourceFolder[] = L"E:\\Source\\Media\\Development";
    static constexpr wchar_t AppleProjectsFolder[] = L"e:\\Source\\Media\\Development\\Projects\\Apple\\";

    // The developers' own commands, on these folders. Elsewhere they do not exist, and nothing is done.
    static void CleanCode();
    static void UpdateAppleProjects();
};
