#include "worker/ZVExecutableApp.h"

#include "core/string/ZVStringGlobals.h"
#include "system/library/CProcessInfo.h"
#include "system/library/ZVModuleMessage.h"
#include "system/library/ZVSiblingLibraries.h"
#include "system/library/ZVStandardOutput.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
// A caller may start the program with a standard stream closed. The next file that is opened would then take its place, and the
// report would be written into it.
void OpenStandardDescriptors()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) == -1)
            open("/dev/null", O_RDWR);
}

// A caller that ignores the ends of its children passes that on. The exit status of a program that a task runs would be lost.
void ListenToChildren()
{
    signal(SIGCHLD, SIG_DFL);
}

// A caller that closed its end of the output, and a file that reaches the limit of its size, are failed writes, with their ways
// through the program, and no reason to end. A handler that does nothing, in the place of an ignored signal, is not passed on to
// the programs that a task runs.
void SurviveFailedWrites()
{
    for (const int number : {SIGPIPE, SIGXFSZ})
        signal(number, [](int) {});
}
}

bool ZVExecutableApp::Initialize()
{
    if (!ZVApp::Initialize())
        return false;
    OpenStandardDescriptors();
    ListenToChildren();
    SurviveFailedWrites();
    ZVStringGlobals::Get().RebuildCharacterTables(true);
    ZVStandardOutput::MakeWide();
    OnInitialize();
    CProcessInfo::Get().MarkStarted();
    return InstallSignalPolicy() && LoadProductInfo();
}

bool ZVExecutableApp::Uninitialize()
{
    ZVSiblingLibraries::Get().UnloadAll();
    OnProcessEnd();
    CProcessInfo::Get().Remove();
    return ZVApp::Uninitialize();
}

bool ZVExecutableApp::LoadProductInfo()
{
    ZVSiblingLibraries& libraries = ZVSiblingLibraries::Get();
    if (!libraries.LoadTools())
    {
        ZVModuleMessage::Print(GetSiblingLibrary(ZVSibling::Tools).File, libraries.GetToolsError());
        return false;
    }
    CProcessInfo::Get().LogStorage();
    return true;
}

bool ZVExecutableApp::InstallSignalPolicy()
{
    signal(SIGABRT, SIG_IGN);
    return true;
}

void ZVExecutableApp::OnProcessEnd() {}
