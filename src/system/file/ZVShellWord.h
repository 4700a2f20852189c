#pragma once

#include "core/string/ZVString.h"

// A path as one word of a shell command, quoted, and never taken for an option. The shell itself prints the bytes that the text
// only carries, since they could not be passed to it as text.
ZVString ZVShellWord(const ZVString& path);
