#include "system/library/CProcessBlockSweep.h"

#include "system/library/CProcessBlock.h"

#include <cerrno>
#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
// Where the system keeps its shared memory objects, each as a file of its name.
constexpr char SharedMemoryFolder[] = "/dev/shm";

// Room for the names of some fifty blocks at a time.
constexpr size_t BufferSize = 4096;

bool IsGone(pid_t processId)
{
    return kill(processId, 0) == -1 && errno == ESRCH;
}

bool IsOwnFile(int folder, const char* name)
{
    struct stat status
    {
    };
    return fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

// Looks at one name of the folder.
void SweepName(int folder, const char* name, pid_t ownProcess)
{
    const pid_t processId = CProcessBlock::GetProcessOfName(name);
    if (processId != 0 && processId != ownProcess && IsGone(processId) && IsOwnFile(folder, name))
        unlinkat(folder, name, 0);
}
}

// The folder is read without the system library's directory stream, which takes a buffer from the heap that is larger than
// anything else a start needs.
void SweepProcessBlocks(pid_t ownProcess)
{
    const int folder = open(SharedMemoryFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder == -1)
        return;
    alignas(dirent64) char buffer[BufferSize];
    for (ssize_t size = getdents64(folder, buffer, sizeof buffer); size > 0; size = getdents64(folder, buffer, sizeof buffer))
    {
        for (ssize_t position = 0; position < size;)
        {
            const dirent64* const entry = reinterpret_cast<const dirent64*>(buffer + position);
            SweepName(folder, entry->d_name, ownProcess);
            position += entry->d_reclen;
        }
    }
    close(folder);
}
