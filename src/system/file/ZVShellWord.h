#pragma once

#include "core/string/ZVString.h"

// A path as one word of a shell command: quoted, and never read as an option. Bytes that the text only carries are printed by the
// shell, since they would not survive the way there as text.
ZVString ZVShellWord(const ZVString& path);
