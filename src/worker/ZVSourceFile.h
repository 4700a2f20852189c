#pragma once

#include "core/string/ZVString.h"

// Loads a file of the product's sources that is going to be saved again. False, with the reason in the log, for a file that cannot be
// read, and for one with NUL characters: a text ends at the first, and the rest of the file would be lost.
bool LoadSourceFile(const ZVString& path, ZVEncoding encoding, ZVString& text);
