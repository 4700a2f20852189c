#include "system/library/ZVProcessTime.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr int64_t NanosecondsPerSecond = 1'000'000'000;

// The field of /proc/<id>/stat with the start time in clock ticks, and the first one behind the program's name, both counted from
// 1.
constexpr int StartTimeField = 22;
constexpr int FirstFieldBehindName = 3;
}

int64_t ZVProcessTime::GetNow()
{
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * NanosecondsPerSecond + now.tv_nsec;
}

int64_t ZVProcessTime::GetProcessStart()
{
    const int file = open("/proc/self/stat", O_RDONLY | O_CLOEXEC);
    char line[1024];
    const ssize_t length = file == -1 ? -1 : read(file, line, sizeof line - 1);
    if (file != -1)
        close(file);
    if (length < 1)
        return INT64_MAX;
    line[length] = '\0';

    // The program's name is in parentheses and may itself hold blanks and parentheses.
    const char* field = strrchr(line, ')');
    for (int number = FirstFieldBehindName; field != nullptr && number <= StartTimeField; ++number)
        field = strchr(field + 1, ' ');
    if (field == nullptr)
        return INT64_MAX;
    return strtoll(field, nullptr, 10) * (NanosecondsPerSecond / sysconf(_SC_CLK_TCK));
}
