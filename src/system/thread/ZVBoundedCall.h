#pragma once

#include <cstdint>
#include <functional>

// Calls of a foreign library that may hang, or that report a failure to a function which must not return.
namespace ZVBoundedCall
{
// Calls a function on a thread of its own and waits for that many milliseconds. Returns null when the function came back, otherwise
// the reason why it did not. Its thread is then left alone with whatever it uses, so the function must own all of that, and
// nobody may look at what it has written. The function must not throw.
const char* Run(std::function<void()> function, int32_t milliseconds);

// For a function within Run, on its thread: has Run return the reason, a text that lasts, and never returns.
[[noreturn]] void GiveUp(const char* reason);
}
