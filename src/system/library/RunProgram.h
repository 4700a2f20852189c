#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

// How RunProgram starts a program.
enum class ZVRunMode
{
    // Returns at once; the program goes on by itself. Each parameter is one argument, whatever it holds.
    NonBlocking,
    // Waits for the end. Program and parameters go through the shell with blanks between them, so each must be quoted with
    // QuoteForShell.
    Blocking,
};

// Runs a program. output, if given, receives what a blocking program printed to standard output, read as UTF-8; of a line with a
// NUL, what is in front of it. exitCode, if given, receives the exit status of a blocking program as the shell gave it, 128 and
// the number of the signal that ended it, or otherwise -1. False when the name is empty or no process could be started; a program
// that is not there is the shell's failure or the child's, and the result is still true.
bool RunProgram(const ZVString& program, const ZVStringArray& parameters, ZVString* output, ZVRunMode mode, int32_t* exitCode);
