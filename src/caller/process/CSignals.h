#pragma once

// The wish of the user that the program ends: Ctrl-C, the end of the terminal, or a polite kill. It ends what waits, a read, a write or a
// pause, and is asked for everywhere else.
namespace CSignals
{
// From here on the signals set IsInterrupted and do nothing else.
void Prepare();
bool IsInterrupted();
}
