#pragma once

#include "system/log/ZVLog.h"

// A command of the system that brings a file or folder from one path to another.
struct ZVFileCommand
{
    ZVLogSource Source;  // under which a failure is logged
    const wchar_t* Program;
    const wchar_t* Options;  // with a blank between them

    // Runs the command and waits for its end. False unless it succeeded. No shell is started, which a locked process may not do.
    bool Run(const ZVString& from, const ZVString& to) const;
};
