#include "system/file/ZVFileError.h"

#include <cerrno>

void ZVLogFileError(const ZVLogSource& source, const char* format, const ZVString& path)
{
    const int error = errno;
    source.Log(format, error, path);
    errno = error;
}
