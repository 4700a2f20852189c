#pragma once

#include "core/string/ZVString.h"

#include <cstdint>
#include <vector>

// What may be done with a path once the process is locked.
enum class ZVShieldAccess : uint8_t
{
    Read,           // read it; of a folder, everything in it too
    List,           // list a folder and those in it
    Write,          // read and write a file that is there
    Change,         // read a folder and everything in it, and make, write, rename and delete files and folders there
    DeleteFiles,    // delete and rename files in a folder
    DeleteFolders,  // delete empty folders in a folder
    Run,            // run a program
};

struct ZVShieldPath
{
    ZVString Path;  // in any style; a symbolic link stands for what it leads to
    ZVShieldAccess Access = ZVShieldAccess::Read;
};

// What a process needs from now on: everything else is to be refused.
struct ZVShieldRules
{
    enum class Network
    {
        None,
        Local,     // sockets of this machine
        Internet,  // these and those of the internet
    };

    // Besides these, the libraries and data of the system can be read; see ZVSystemFolders. Paths where nothing is are left out.
    std::vector<ZVShieldPath> Paths;
    Network Sockets = Network::None;
    // Whether other programs may be started at all. Which of them says Paths.
    bool RunsPrograms = false;
    // In bytes.
    int64_t MemoryLimit = INT64_MAX;
};
