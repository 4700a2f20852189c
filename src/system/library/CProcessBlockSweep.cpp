#include "system/library/CProcessBlockSweep.h"

#include "system/library/CProcessBlock.h"
#include "system/library/ZVDescriptor.h"

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

bool IsOwnFile(const ZVDescriptor& folder, const char* name)
{
    struct stat status
    {
    };
    return fstatat(folder.Get(), name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid();
}

void SweepName(const ZVDescriptor& folder, const char* name, pid_t ownProcess)
{
    const pid_t processId = CProcessBlock::GetProcessOfName(name);
    if (processId != 0 && processId != ownProcess && IsGone(processId) && IsOwnFile(folder, name))
        unlinkat(folder.Get(), name, 0);
}
}

// The folder is read without the directory stream of the C library, whose buffer would be larger than anything else that a start
// takes from the heap.
void SweepProcessBlocks(pid_t ownProcess)
{
    const ZVDescriptor folder(open(SharedMemoryFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.IsOpen())
        return;
    alignas(dirent64) char buffer[BufferSize];
    for (ssize_t size = 0; (size = getdents64(folder.Get(), buffer, sizeof buffer)) > 0;)
    {
        for (ssize_t position = 0; position < size;)
        {
            const dirent64* const entry = reinterpret_cast<const dirent64*>(buffer + position);
            SweepName(folder, entry->d_name, ownProcess);
            position += entry->d_reclen;
        }
    }
}
