#pragma once

#include "caller/commands/CCallerOptions.h"

#include <string>

// `zivora report`: a page with all films of a catalog.
struct CReportCommand
{
    std::string Catalog;  // empty for the user's own
    std::string Page;     // empty for films.html in the working folder, "-" for standard output
    bool AsJSON = false;

    ExitStatus Run() const;
};
