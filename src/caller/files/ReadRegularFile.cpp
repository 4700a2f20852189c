#include "caller/files/ReadRegularFile.h"

#include "caller/files/CDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{
enum class Part
{
    All,
    End,
};

// A file that is cut short meanwhile has the bytes that were still there.
std::optional<std::string> ReadFrom(int file, off_t start, uint64_t size)
{
    std::string bytes(size, '\0');
    size_t has = 0;
    while (has < bytes.size())
    {
        const ssize_t count = pread(file, bytes.data() + has, bytes.size() - has, start + static_cast<off_t>(has));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        has += static_cast<size_t>(count);
    }
    bytes.resize(has);
    return bytes;
}

std::optional<std::string> Read(const std::filesystem::path& path, uint64_t limit, Part part)
{
    const CDescriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status;
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const uint64_t all = static_cast<uint64_t>(status.st_size);
    if (part == Part::All && all > limit)
        return std::nullopt;
    const uint64_t size = std::min(all, limit);
    return ReadFrom(file.Get(), static_cast<off_t>(all - size), size);
}
}

std::optional<std::string> ReadRegularFile(const std::filesystem::path& path, uint64_t limit)
{
    return Read(path, limit, Part::All);
}

std::optional<std::string> ReadRegularFileEnd(const std::filesystem::path& path, uint64_t limit)
{
    return Read(path, limit, Part::End);
}
