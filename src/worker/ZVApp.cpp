#include "worker/ZVApp.h"

#include <cstdio>

ZVApp* g_pApp = nullptr;
volatile sig_atomic_t g_bExitRequested = 0;

namespace
{
void WriteToStandardError(const char* text)
{
    fputs(text, stderr);
}

void OnHangup(int)
{
    static constexpr char Message[] = "Received a hangup signal, will exit!\n";
    fwrite(Message, 1, sizeof Message - 1, stderr);
    g_bExitRequested = 1;
}
}

ZVApp::ZVApp()
{
    g_pApp = this;
}

bool ZVApp::OnModuleEvent(void* handle, ZVModuleEvent reason)
{
    if (reason == ZVModuleEvent::Attach)
    {
        if (AttachCount.fetch_add(1) != 0)
            return true;
        ModuleHandle = handle;
        return Initialize();
    }
    if (reason == ZVModuleEvent::Detach)
        return AttachCount.fetch_sub(1) != 1 || Uninitialize();
    return true;
}

int32_t ZVApp::RunHandlingHangup(void* handle, void*, int32_t data)
{
    ModuleHandle = handle;
    ModuleData = data;
    if (Initialize())
    {
        struct sigaction action
        {
        };
        action.sa_handler = OnHangup;
        if (sigaction(SIGHUP, &action, nullptr) == -1)
            WriteToStandardError("Linux sigaction failure. Hangup will NOT be caught!\n");
        Process();
    }
    Uninitialize();
    return ExitCode;
}

int32_t ZVApp::Run()
{
    if (Initialize())
        Process();
    Uninitialize();
    return ExitCode;
}

bool ZVApp::Initialize()
{
    return true;
}

bool ZVApp::Uninitialize()
{
    return true;
}

bool ZVApp::Process()
{
    return true;
}

bool ZVApp::CanRun()
{
    return true;
}

bool ZVApp::LoadProductInfo()
{
    return true;
}

bool ZVApp::InstallSignalPolicy()
{
    return true;
}
