#include "caller/files/CWholeFile.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <stdexcept>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace
{
namespace fs = std::filesystem;

constexpr size_t BufferSize = 0x10000;

// What a file gets that is made in the ordinary way. The mask can only be read by setting it.
mode_t GetUsualMode()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// A file that is replaced keeps its rights, so that what nobody else may read stays so.
mode_t GetMode(const fs::path& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : GetUsualMode();
}

// The names of what the program has open already, and of standard output and the output for errors.
constexpr std::string_view OpenFiles[] = {"/dev/fd/", "/proc/self/fd/"};
constexpr std::pair<std::string_view, int> Outputs[] = {
    {"/dev/stdout", STDOUT_FILENO},
    {"/dev/stderr", STDERR_FILENO},
};

// The number of what is open already under an absolute name; nothing if the name is another.
std::optional<int> GetOpenFile(std::string_view name)
{
    for (const auto& [output, number] : Outputs)
        if (name == output)
            return number;
    for (const std::string_view folder : OpenFiles)
    {
        int number = 0;
        const char* const end = name.data() + name.size();
        if (!name.starts_with(folder))
            continue;
        if (const auto [last, error] = std::from_chars(name.data() + folder.size(), end, number);
            error == std::errc() && last == end)
            return number;
    }
    return std::nullopt;
}

// Whether an absolute name belongs to the system, which alone makes and replaces such names. Shared memory is a place for files.
bool IsOfSystem(std::string_view name)
{
    return name.starts_with("/proc/") || (name.starts_with("/dev/") && !name.starts_with("/dev/shm/"));
}

bool IsNoFile(const fs::path& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}
}

CWholeFile::CWholeFile(const fs::path& path) : m_path(path)
{
    const std::string name = fs::absolute(path).lexically_normal();
    const std::optional<int> number = GetOpenFile(name);
    if (number || IsOfSystem(name) || IsNoFile(path))
    {
        m_file =
            CDescriptor(number ? fcntl(*number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : open(path.c_str(), O_WRONLY | O_CLOEXEC));
        if (!m_file.IsOpen())
            Fail();
        return;
    }
    // A link stays one: what it leads to is replaced.
    std::error_code error;
    if (const fs::path target = fs::canonical(path, error); !error)
        m_path = target;
    m_temporary = m_path.parent_path() / (".zivora-XXXXXX");
    m_file = CDescriptor(mkostemp(m_temporary.data(), O_CLOEXEC));
    if (!m_file.IsOpen())
    {
        m_temporary.clear();
        Fail();
    }
}

CWholeFile::~CWholeFile()
{
    if (!m_temporary.empty())
        unlink(m_temporary.c_str());
}

void CWholeFile::Fail() const
{
    throw std::runtime_error("the file " + m_path.string() + " cannot be written: " + strerror(errno));
}

void CWholeFile::Write(std::string_view bytes)
{
    m_buffer += bytes;
    if (m_buffer.size() >= BufferSize)
        Flush();
}

void CWholeFile::Flush()
{
    size_t written = 0;
    while (written < m_buffer.size())
    {
        const ssize_t count = write(m_file.Get(), m_buffer.data() + written, m_buffer.size() - written);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            Fail();
        written += static_cast<size_t>(count);
    }
    m_buffer.clear();
}

void CWholeFile::Finish()
{
    Flush();
    if (m_temporary.empty())
        return;
    // The bytes are on the disk before the name leads to them.
    if (fchmod(m_file.Get(), GetMode(m_path)) != 0 || fsync(m_file.Get()) != 0 ||
        rename(m_temporary.c_str(), m_path.c_str()) != 0)
        Fail();
    m_temporary.clear();
    m_file.Close();
}
