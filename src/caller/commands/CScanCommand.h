#pragma once

#include "caller/commands/CCallerOptions.h"
#include "caller/scan/CScan.h"

#include <string>
#include <vector>

// `zivora scan`: brings the catalog of a library up to date.
struct CScanCommand
{
    std::vector<std::string> Folders;
    std::string Catalog;  // empty for the user's own
    CScanOptions Options;

    ExitStatus Run(const CCallerOptions& caller) const;
};

// The catalog of the user, below the folder for data of programs.
std::filesystem::path GetDefaultCatalog();
