#include "system/file/ZVFolderLock.h"

#include <algorithm>
#include <cerrno>

namespace
{
constexpr useconds_t FirstPause = 50;
constexpr useconds_t LongestPause = 10'000;
constexpr useconds_t LongestWait = 10'000'000;
}

bool ZVFolderLock::Try(const ZVDescriptor& folder, int operation)
{
    return flock(folder.Get(), operation | LOCK_NB) == 0;
}

bool ZVFolderLock::Wait(const ZVDescriptor& folder, int operation)
{
    // Most locks are held for microseconds only.
    useconds_t pause = FirstPause;
    for (useconds_t waited = 0; waited < LongestWait; waited += pause)
    {
        if (Try(folder, operation))
            return true;
        if (errno != EWOULDBLOCK && errno != EINTR)
            return false;
        pause = std::min(pause * 2, LongestPause);
        usleep(pause);
    }
    errno = EWOULDBLOCK;
    return false;
}
