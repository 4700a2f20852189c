#pragma once

#include "worker/ZVApp.h"

// The application of a program of its own: it owns the process's locale, signals and standard output.
class ZVExecutableApp : public ZVApp
{
public:
    // Sets the locale from the environment, makes the standard output wide, installs the signal policy and loads the product's information.
    bool Initialize() override;
    bool Uninitialize() override;
    // Binds what the product's libraries share. False ends the start.
    bool LoadProductInfo() override;
    // SIGABRT is ignored.
    bool InstallSignalPolicy() override;
    void OnProcessEnd() override;
};
