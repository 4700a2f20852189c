#include "worker/ZVExecutableApp.h"

#include "core/string/ZVStringGlobals.h"
#include "worker/ZVStandardOutput.h"

#include <csignal>

bool ZVExecutableApp::Initialize()
{
    if (!ZVApp::Initialize())
        return false;
    ZVStringGlobals::Get().RebuildCharacterTables(true);
    ZVStandardOutput::MakeWide();
    OnInitialize();
    return InstallSignalPolicy() && LoadProductInfo();
}

bool ZVExecutableApp::Uninitialize()
{
    OnProcessEnd();
    return ZVApp::Uninitialize();
}

bool ZVExecutableApp::LoadProductInfo()
{
    return true;
}

bool ZVExecutableApp::InstallSignalPolicy()
{
    signal(SIGABRT, SIG_IGN);
    return true;
}

void ZVExecutableApp::OnProcessEnd() {}
