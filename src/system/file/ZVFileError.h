#pragma once

#include "system/log/ZVLog.h"

// Logs why a call on a file failed, and leaves errno as it was. The format has a "%d" for errno and after it a "%s" for the path.
void ZVLogFileError(const ZVLogSource& source, const char* format, const ZVString& path);
