#include "worker/ZVWorkerApp.h"

// The application object exists before main runs and registers itself as the process's application.
static ZVWorkerApp s_workerApp;

int main(int argc, char** argv)
{
    if (g_pApp == nullptr)
        return -1;
    g_pApp->GetCommandLine().Assign(argc, argv);
    return g_pApp->Run();
}
