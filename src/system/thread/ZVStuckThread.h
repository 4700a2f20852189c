#pragma once

#include <thread>

namespace ZVStuckThread
{
// Gives up a thread that hangs in a foreign library: nobody waits for it any more, and the process will end without freeing
// anything that it might still use. False when the process may not end so cleanly.
bool Abandon(std::thread& thread);
}
