#include "system/library/ZVSharedMemory.h"

#include "core/string/ZVStringUTF8.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
// Readable and writable for the user alone.
constexpr mode_t BlockMode = S_IRUSR | S_IWUSR;
constexpr mode_t OthersMode = S_IRWXG | S_IRWXO;

ZVString SystemName(const ZVString& name)
{
    return L"/" + name;
}
}

bool ZVSharedMemory::Create(const ZVString& name, size_t size)
{
    Close();
    const ZVStringUTF8 systemName(SystemName(name));
    m_block = ZVDescriptor(shm_open(systemName, O_RDWR | O_CREAT | O_EXCL, BlockMode));
    if (!m_block.IsOpen())
        return Fail(errno);
    if (ftruncate(m_block.Get(), static_cast<off_t>(size)) == 0 && Map(size))
        return true;
    const int32_t error = errno;
    shm_unlink(systemName);
    return Fail(error);
}

bool ZVSharedMemory::Open(const ZVString& name, size_t size)
{
    Close();
    // A name that is a symbolic link is not followed.
    m_block = ZVDescriptor(shm_open(ZVStringUTF8(SystemName(name)), O_RDWR, 0));
    if (!m_block.IsOpen())
        return Fail(errno);
    struct stat status
    {
    };
    if (fstat(m_block.Get(), &status) != 0)
        return Fail(errno);
    if (!S_ISREG(status.st_mode) || status.st_uid != geteuid())
        return Fail(EPERM);
    // A shorter block would end the process at the first access beyond its end.
    if (status.st_size != static_cast<off_t>(size) || (status.st_mode & OthersMode) != 0)
        return Fail(EINVAL);
    return Map(size) || Fail(errno);
}

void ZVSharedMemory::Close()
{
    if (m_data != nullptr)
        munmap(m_data, m_size);
    m_data = nullptr;
    m_block.Close();
}

bool ZVSharedMemory::Remove(const ZVString& name)
{
    return shm_unlink(ZVStringUTF8(SystemName(name))) == 0;
}

bool ZVSharedMemory::Reserve(size_t offset, size_t size)
{
    int32_t error = EINTR;
    while (error == EINTR)
        error = posix_fallocate(m_block.Get(), static_cast<off_t>(offset), static_cast<off_t>(size));
    if (error != 0)
        m_error = error;
    return error == 0;
}

bool ZVSharedMemory::Fail(int32_t error)
{
    Close();
    m_error = error;
    return false;
}

bool ZVSharedMemory::Map(size_t size)
{
    void* const data = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, m_block.Get(), 0);
    if (data == MAP_FAILED)
        return false;
    m_data = data;
    m_size = size;
    return true;
}
