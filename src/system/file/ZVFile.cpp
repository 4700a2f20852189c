#include "system/file/ZVFile.h"

#include "core/containers/ZVBuffer.h"
#include "core/string/ZVUTF8.h"
#include "system/file/ZVFileError.h"
#include "system/filename/ZVNativePath.h"
#include "system/log/ZVLogCategory.h"
#include "system/log/ZVLogScope.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource ReopenSource {ZVLogCategory::General, L"ZVFile::Reopen"};
constexpr ZVLogSource WriteSource {ZVLogCategory::General, L"ZVFile::Write"};
constexpr ZVLogSource ControlSource {ZVLogCategory::General, L"ZVFile::Control"};

constexpr mode_t NewFileMode = 0644;

struct AccessFlags
{
    ZVFileAccess Access;
    int Flags;
};

constexpr AccessFlags AccessFlagTable[] = {
    {ZVFileAccess::Read,      O_RDONLY},
    {ZVFileAccess::Write,     O_WRONLY},
    {ZVFileAccess::ReadWrite, O_RDWR  },
};

struct CreationFlags
{
    ZVFileCreation Creation;
    int Flags;
};

constexpr CreationFlags CreationFlagTable[] = {
    {ZVFileCreation::CreateAndTruncate, O_CREAT | O_TRUNC},
    {ZVFileCreation::CreateNew,         O_CREAT | O_EXCL },
    {ZVFileCreation::OpenOrCreate,      O_CREAT          },
    {ZVFileCreation::Append,            O_APPEND         },
};

int FlagsOf(ZVFileAccess access)
{
    for (const AccessFlags& entry : AccessFlagTable)
        if (entry.Access == access)
            return entry.Flags;
    return O_RDONLY;
}

int FlagsOf(ZVFileCreation creation)
{
    for (const CreationFlags& entry : CreationFlagTable)
        if (entry.Creation == creation)
            return entry.Flags;
    return 0;
}

int WhenceOf(ZVSeekOrigin origin)
{
    return origin == ZVSeekOrigin::Current ? SEEK_CUR : origin == ZVSeekOrigin::End ? SEEK_END : SEEK_SET;
}

// Repeats a call of the system until no signal interrupts it.
template <class Function>
auto Uninterrupted(Function function)
{
    auto result = function();
    while (result == -1 && errno == EINTR)
        result = function();
    return result;
}

// One call that reads or writes. A negative length fails as a wrong argument of the system does.
template <class Function>
ssize_t Transfer(int64_t length, Function function)
{
    if (length >= 0)
        return Uninterrupted([&] { return function(static_cast<size_t>(length)); });
    errno = EINVAL;
    return -1;
}

// Takes the lock of a writer on the whole file. It belongs to the open file, so that it tells two writers in one process apart.
// It excludes locks that belong to a process and is excluded by them; kernels before 3.15 know only these.
bool LockDescriptor(int descriptor)
{
    struct flock lock
    {
    };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (fcntl(descriptor, F_OFD_SETLK, &lock) == 0 || (errno == EINVAL && fcntl(descriptor, F_SETLK, &lock) == 0))
        return true;
    return errno == ENOLCK || errno == ENOTSUP;
}

// False for a folder, which some modes can open.
bool IsNoFolder(int descriptor)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0)
        return false;
    if (!S_ISDIR(status.st_mode))
        return true;
    errno = EISDIR;
    return false;
}

// Empties a plain file, and does nothing to anything else.
bool Truncate(int descriptor)
{
    struct stat status;
    return fstat(descriptor, &status) == 0 &&
           (!S_ISREG(status.st_mode) || Uninterrupted([&] { return ftruncate64(descriptor, 0); }) == 0);
}
}

bool ZVFile::Open(const ZVFilename& name, ZVFileAccess access, ZVFileShare share, ZVFileCreation creation)
{
    ZVFilename::operator=(name);
    m_access = access;
    m_share = share;
    m_creation = creation;
    return Reopen();
}

bool ZVFile::Reopen()
{
    Close();
    m_descriptor = OpenDescriptor();
    m_isOpen = m_descriptor.IsOpen();
    if (!m_isOpen)
        ZVLogFileError(ReopenSource, "Error %d opening file: %s", GetFilename());
    return m_isOpen;
}

ZVDescriptor ZVFile::OpenDescriptor() const
{
    // A file that another writer has locked must not lose its content, so an open that locks truncates only under its lock.
    const int creationFlags = FlagsOf(m_creation);
    const int postponedFlags = LocksFile() ? creationFlags & O_TRUNC : 0;
    const int flags = FlagsOf(m_access) | (creationFlags & ~postponedFlags) | O_CLOEXEC;
    const ZVNativePath path(GetFilename());
    ZVDescriptor file(Uninterrupted([&] { return open64(path, flags, NewFileMode); }));
    if (!file.IsOpen())
        return file;
    if (IsNoFolder(file.Get()) && (!LocksFile() || LockDescriptor(file.Get())) && (postponedFlags == 0 || Truncate(file.Get())))
        return file;
    const int error = errno;
    file.Close();
    errno = error;
    return file;
}

bool ZVFile::Close()
{
    m_descriptor.Close();
    m_isOpen = false;
    return true;
}

int64_t ZVFile::GetPosition() const
{
    return m_isOpen ? lseek64(m_descriptor.Get(), 0, SEEK_CUR) : -1;
}

int64_t ZVFile::Seek(int64_t offset, ZVSeekOrigin origin)
{
    return m_isOpen ? lseek64(m_descriptor.Get(), offset, WhenceOf(origin)) : -1;
}

bool ZVFile::SetEndOfFile()
{
    const int64_t position = GetPosition();
    if (position == -1)
        return false;
    // This order keeps growing recordings fast. A file is shortened only where space cannot be had in advance.
    if (Uninterrupted([&] { return fallocate64(m_descriptor.Get(), 0, 0, position); }) == 0)
        return true;
    return Uninterrupted([&] { return ftruncate64(m_descriptor.Get(), position); }) == 0;
}

int64_t ZVFile::GetLength() const
{
    struct stat status;
    const int result = m_isOpen ? fstat(m_descriptor.Get(), &status) : stat(ZVNativePath(GetFilename()), &status);
    return result == 0 ? status.st_size : -1;
}

bool ZVFile::Write(const void* buffer, int64_t length, int64_t& written)
{
    const ssize_t result = Transfer(length, [&](size_t size) { return write(m_descriptor.Get(), buffer, size); });
    written = result == -1 ? 0 : result;
    if (result == -1)
        ZVLogFileError(WriteSource, "Error %d writing file: %s", GetFilename());
    return result != -1;
}

bool ZVFile::Write(const void* buffer, int64_t length)
{
    // The system takes at most 2 GiB at once, and when the disk is nearly full fewer bytes than asked for: the next call then
    // fails.
    const uint8_t* bytes = static_cast<const uint8_t*>(buffer);
    int64_t written = 0;
    do
    {
        if (!Write(bytes, length, written) || (written == 0 && length > 0))
            return false;
        bytes += written;
        length -= written;
    } while (length > 0);
    return true;
}

bool ZVFile::WriteWide(const ZVString& text)
{
    return Write(text.GetText(), static_cast<int64_t>(text.GetLength()) * static_cast<int64_t>(sizeof(wchar_t)));
}

bool ZVFile::WriteUTF8(const ZVString& text, ZVBuffer& scratch)
{
    if (text.IsEmpty())
        return true;
    const size_t length = static_cast<size_t>(text.GetLength());
    const int64_t size = static_cast<int64_t>(ZVUTF8::EncodedSize(text, length));
    scratch.Grow(size);
    scratch.SetUsed(size);
    ZVUTF8::Encode(text, length, reinterpret_cast<char*>(scratch.GetData()));
    return Write(scratch.GetData(), size);
}

bool ZVFile::WriteUTF8(const ZVString& text)
{
    ZVBuffer scratch;
    return WriteUTF8(text, scratch);
}

bool ZVFile::WriteNarrow(const ZVString& text)
{
    int32_t size = 0;
    const std::unique_ptr<char[]> bytes(text.GetNarrow(&size));
    Write(bytes.get(), size);
    return true;
}

bool ZVFile::Read(void* buffer, int64_t length, int64_t& read)
{
    const ssize_t result = Transfer(length, [&](size_t size) { return ::read(m_descriptor.Get(), buffer, size); });
    read = result == -1 ? 0 : result;
    return result != -1;
}

bool ZVFile::ReadLineWide(ZVString& text)
{
    text.Empty();
    bool isThere = false;
    wchar_t value = L'\0';
    int64_t read = 0;
    while (Read(&value, sizeof value, read) && read == sizeof value)
    {
        isThere = true;
        if (value == L'\n' || value == L'\0')
            break;
        text.AppendCharacter(value);
    }
    return isThere;
}

bool ZVFile::ReadLineUTF8(ZVString& text)
{
    std::string bytes;
    bool isThere = false;
    char byte = '\0';
    int64_t read = 0;
    while (Read(&byte, 1, read) && read == 1)
    {
        isThere = true;
        if (byte == '\n')
            break;
        bytes.push_back(byte);
    }
    text.SetFromUTF8(bytes.data(), static_cast<int32_t>(std::min<size_t>(bytes.size(), INT32_MAX)));
    return isThere;
}

bool ZVFile::ReadLine(ZVString& text)
{
    if (ReadLineWide(text))
        return true;
    // A closed file and a pipe have no position. A caller that reads lines until there are none would never stop.
    const int64_t position = GetPosition();
    return position != -1 && position < GetLength();
}

bool ZVFile::Flush()
{
    return fdatasync(m_descriptor.Get()) == 0;
}

bool ZVFile::SetFileTime(const timeval& accessed, const timeval& modified)
{
    const timeval times[] = {accessed, modified};
    return utimes(ZVNativePath(GetFilename()), times) == 0;
}

int32_t ZVFile::Control(uint32_t)
{
    const ZVLogScope scope(ControlSource, true);
    return 0;
}
