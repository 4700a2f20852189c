#pragma once

#include "core/string/ZVString.h"

// The process's standard output, which carries the report. It is wide from the first character on: after one narrow write the
// system library would print no wide text any more, and the report would be lost.
namespace ZVStandardOutput
{
// Makes the stream wide. Called once, directly after the locale is set, which decides the bytes that characters become.
void MakeWide();

// Prints a text as it stands. A character that the locale cannot write becomes "?", so that it costs no more than itself.
void Print(const ZVString& text);

// Hands what was printed to the system.
void Flush();

// Prints a format with at most 20 arguments.
template <class... Arguments>
void PrintFormat(const wchar_t* format, const Arguments&... arguments)
{
    Print(ZVFormat(format, arguments...));
}
}
