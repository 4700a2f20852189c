#pragma once

#include "core/string/ZVString.h"

// Logs why a call on a file failed and leaves errno as it was. format begins with a "%d" for errno and has a "%s" for the path.
void ZVLogFileError(const char* scopeName, const char* format, const ZVString& path);
