#pragma once

#include "core/containers/ZVStringArray.h"
#include "core/string/ZVString.h"

// How RunProgram starts a program.
enum class ZVRunMode
{
    // Returns at once; the program goes on by itself. Each parameter is one argument, whatever it contains.
    NonBlocking,
    // Waits for the end. Program and parameters go through the shell with blanks between them, so what the shell must not
    // interpret is to be quoted with QuoteForShell.
    Blocking,
    // Waits for the end. No shell is in between: each parameter is one argument, whatever it contains, and a path has the bytes
    // that its file has. What the program prints goes to standard error.
    Direct,
};

// Runs a program. output, if given, receives what a blocking program printed to standard output, read as UTF-8; a line is cut at
// a NUL. exitCode, if given, receives the exit status of a program that was waited for as a shell reports it: 128 plus the number of
// the signal that ended it, 127 when there is no such program; in all other cases -1. False when the name is empty or no process
// could be started. A program that does not exist is a failure of the shell or of the child, and the result is still true.
bool RunProgram(const ZVString& program, const ZVStringArray& parameters, ZVString* output, ZVRunMode mode, int32_t* exitCode);
