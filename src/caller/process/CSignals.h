#pragma once

// The wish of the user that the program ends: Ctrl-C, the end of the terminal, or a polite kill. It is noticed where the program waits,
// and asked for everywhere else.
namespace CSignals
{
// Keeps the signals back until somebody waits, from where on they set IsInterrupted.
void Prepare();
bool IsInterrupted();
}
