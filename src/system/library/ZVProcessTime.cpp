#include "system/library/ZVProcessTime.h"

#include "system/library/ZVDescriptor.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr int64_t NanosecondsPerSecond = 1'000'000'000;

// Fields of /proc/<id>/stat, counted from 1: the start time in clock ticks, and the first field after the program's name.
constexpr int StartTimeField = 22;
constexpr int FirstFieldAfterName = 3;
}

int64_t ZVProcessTime::GetNow()
{
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * NanosecondsPerSecond + now.tv_nsec;
}

int64_t ZVProcessTime::GetProcessStart()
{
    const ZVDescriptor file(open("/proc/self/stat", O_RDONLY | O_CLOEXEC));
    char line[1024];
    const ssize_t length = file.IsOpen() ? read(file.Get(), line, sizeof line - 1) : -1;
    if (length < 1)
        return INT64_MAX;
    line[length] = '\0';

    // The program's name is in parentheses and may itself contain blanks and parentheses.
    const char* field = strrchr(line, ')');
    for (int number = FirstFieldAfterName; field != nullptr && number <= StartTimeField; ++number)
        field = strchr(field + 1, ' ');
    if (field == nullptr)
        return INT64_MAX;
    return strtoll(field, nullptr, 10) * (NanosecondsPerSecond / sysconf(_SC_CLK_TCK));
}
