#pragma once

#include "worker/ZVApp.h"

// The application of a program of its own: it owns the process's locale, signals and standard output.
class ZVExecutableApp : public ZVApp
{
public:
    // Mends what a caller may pass on (closed standard streams, ignored children), turns signals of failed writes into failed
    // writes, sets the locale from the environment, makes the standard output wide, makes the process information, installs the
    // signal policy and loads the product's information.
    bool Initialize() override;
    // Unloads the product's libraries and takes the process information away. May be called after a start that failed.
    bool Uninitialize() override;
    // Binds the tools library. False, after a message on standard error, when it does not load or cannot serve; that ends the
    // start.
    bool LoadProductInfo() override;
    // SIGABRT is ignored.
    bool InstallSignalPolicy() override;
    void OnProcessEnd() override;
};
