#pragma once

#include "caller/commands/CCallerOptions.h"

#include <string>
#include <vector>

// `zivora info`: what films are, in the order in which they are named.
struct CInfoCommand
{
    std::vector<std::string> Films;

    ExitStatus Run(const CCallerOptions& options) const;
};
