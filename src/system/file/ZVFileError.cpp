#include "system/file/ZVFileError.h"

#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <cerrno>

void ZVLogFileError(const char* scopeName, const char* format, const ZVString& path)
{
    const int error = errno;
    ZVLog(ZVLogCategory::General, ZVString::FromUTF8(scopeName), format, error, path);
    errno = error;
}
