#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/containers/ZVUniqueList.h"
#include "worker/ZVCommandLine.h"

#include <atomic>
#include <csignal>
#include <cstdint>

class ZVApp;

// The one application object of the process; set by its constructor and never cleared.
extern ZVApp* g_pApp;

// Set when the process is to end. The worker's single thread does not poll it; it is there for the message loop of other
// applications.
extern volatile sig_atomic_t g_bExitRequested;

// What OnModuleEvent tells. Systems have further reasons, which mean nothing here.
enum class ZVModuleEvent : int32_t
{
    Detach = 0,
    Attach = 1,
};

// The root of the application classes: one object in each process, which starts up, does its work and shuts down.
class ZVApp
{
public:
    ZVApp();
    // The order of the virtual functions is fixed.
    virtual ~ZVApp() = default;

    // Counts the users of a module: the first attach keeps the handle and starts up, the last detach shuts down. Returns how that
    // went, and true for everything else.
    virtual bool OnModuleEvent(void* handle, ZVModuleEvent reason);
    // Run with a handler for SIGHUP, which asks the process to end. handle and data are kept as they are.
    virtual int32_t RunHandlingHangup(void* handle, void* reserved, int32_t data);
    // Starts up, processes and shuts down; returns the exit value. When the start fails nothing is processed and the value is 0.
    virtual int32_t Run();
    virtual bool Initialize();
    virtual bool Uninitialize();
    virtual bool Process();
    virtual bool CanRun();
    virtual void OnToolkitStart() {}
    virtual void OnToolkitEnd() {}
    virtual bool LoadProductInfo();
    virtual bool InstallSignalPolicy();
    virtual void OnProcessEnd() {}
    virtual void OnInitialize() {}

    ZVApp(const ZVApp&) = delete;
    ZVApp& operator=(const ZVApp&) = delete;

    ZVCommandLine& GetCommandLine() { return CommandLine; }
    int32_t GetExitCode() const { return ExitCode; }

protected:
    void* ModuleHandle = nullptr;
    int32_t ModuleData = 0;
    ZVCommandLine CommandLine;
    int32_t ExitCode = 0;
    ZVUniqueList<void*, void*> ToolkitObjects;
    std::atomic<int32_t> AttachCount {0};
    ZVStringArray ToolkitArguments;
};
