#pragma once

#include "core/string/ZVString.h"

// The process's standard output, which carries the report. What is printed is written at once and in its order, also by the
// libraries of the product.
namespace ZVStandardOutput
{
// Makes the system library's own stream wide, so that no library can print narrow text into the report. Called once, directly
// after the locale is set, which decides the bytes that characters become.
void MakeWide();

// Prints a text as it stands, and waits for an output that cannot take it yet. A character that the locale cannot write becomes
// "?", so that it costs no more than itself.
void Print(const ZVString& text);

// Prints a format with at most 20 arguments.
template <class... Arguments>
void PrintFormat(const wchar_t* format, const Arguments&... arguments)
{
    Print(ZVFormat(format, arguments...));
}
}
