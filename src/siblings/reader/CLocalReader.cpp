#include "siblings/reader/CLocalReader.h"

#include "siblings/reader/CResourceName.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLog.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>

namespace
{
constexpr ZVLogSource OpenSource {ZVLogCategory::General, L"CLocalReader::Open"};
constexpr ZVLogSource ReadSource {ZVLogCategory::General, L"CLocalReader::Read"};

// The most bytes of one call of the system, which a Cancel has to wait for.
constexpr int64_t MaximumPiece = 0x1000000;

struct Refusal
{
    mode_t Kind;
    const char* Reason;
};

constexpr Refusal Refusals[] = {
    {S_IFDIR,  "it is a folder"                                   },
    {S_IFIFO,  "it is a pipe"                                     },
    {S_IFSOCK, "it is a socket"                                   },
    {S_IFCHR,  "it is a terminal or another device without a size"},
};

const char* GetRefusal(mode_t mode)
{
    for (const Refusal& refusal : Refusals)
        if ((mode & S_IFMT) == refusal.Kind)
            return refusal.Reason;
    return nullptr;
}

// Reads bytes at a place and returns their count: 0 at the end, -1 with the cause in errno.
int64_t ReadAt(const ZVDescriptor& descriptor, void* bytes, int64_t count, int64_t position)
{
    ssize_t result;
    do
        result = pread64(descriptor.Get(), bytes, static_cast<size_t>(std::min(count, MaximumPiece)), position);
    while (result == -1 && errno == EINTR);
    return result;
}
}

CLocalReader::CLocalReader(const ZVString& name)
{
    ZVString path = name;
    m_isAddress = CResourceName::CutFileScheme(path);
    m_path = ZVNativePath(path).GetBytes();
}

bool CLocalReader::Open()
{
    m_descriptor.Close();
    m_position = 0;
    m_isOpen = false;
    try
    {
        m_isOpen = !IsCancelled() && OpenFile();
    }
    catch (const std::bad_alloc&)
    {
    }
    if (!m_isOpen)
        m_descriptor.Close();
    m_hasFailed = !m_isOpen;
    return m_isOpen;
}

bool CLocalReader::OpenFile()
{
    if (!OpenDescriptor())
        return false;
    struct stat status;
    if (fstat(m_descriptor.Get(), &status) != 0)
        return Fail(OpenSource, errno);
    if (const char* const reason = GetRefusal(status.st_mode))
    {
        OpenSource.Log("%s is not read: %s", m_path.c_str(), reason);
        return false;
    }
    char byte;
    m_hidesSize = S_ISREG(status.st_mode) && status.st_size == 0 && ReadAt(m_descriptor, &byte, 1, 0) == 1;
    return true;
}

bool CLocalReader::OpenDescriptor()
{
    // Opening a pipe waits for its other side unless told not to.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    m_descriptor = ZVDescriptor(open64(m_path.c_str(), flags));
    if (!m_descriptor.IsOpen() && errno == ENOENT && m_isAddress && m_path.find('%') != std::string::npos)
        m_descriptor = ZVDescriptor(open64(CResourceName::DecodePercent(m_path).c_str(), flags));
    if (!m_descriptor.IsOpen())
        return Fail(OpenSource, errno);
    fcntl(m_descriptor.Get(), F_SETFL, fcntl(m_descriptor.Get(), F_GETFL) & ~O_NONBLOCK);
    return true;
}

int64_t CLocalReader::Read(void* bytes, int64_t count)
{
    m_hasFailed = !m_isOpen || IsCancelled();
    int64_t done = 0;
    while (done < count && !m_hasFailed)
    {
        const int64_t read = ReadAt(m_descriptor, static_cast<char*>(bytes) + done, count - done, m_position);
        if (read == 0)
            break;
        if (read < 0)
        {
            Fail(ReadSource, errno);
            break;
        }
        done += read;
        m_position += read;
        m_hasFailed = IsCancelled();
    }
    return done;
}

int64_t CLocalReader::GetSize()
{
    if (!m_isOpen || m_hidesSize)
        return -1;
    struct stat status;
    if (fstat(m_descriptor.Get(), &status) != 0)
        return -1;
    return S_ISREG(status.st_mode) ? status.st_size : lseek64(m_descriptor.Get(), 0, SEEK_END);
}

bool CLocalReader::Fail(const ZVLogSource& source, int error)
{
    m_hasFailed = true;
    source.Log("Error %d reading %s: %s", error, m_path.c_str(), strerror(error));
    return false;
}
