#include "siblings/tools/locks/CNamedLock.h"

#include "contracts/ILogManager.h"
#include "core/string/ZVStringUTF8.h"
#include "siblings/tools/CDataFolder.h"
#include "system/log/ZVLogCategory.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace
{
constexpr mode_t FileMode = 0600;

// How long to wait between two tries, at first and at most: a lock is held for seconds or minutes, if it is held at all.
constexpr std::chrono::milliseconds FirstWait {5};
constexpr std::chrono::milliseconds LongestWait {100};

// A name as a file name: letters, digits, "-" and "_" as they are, every other byte of its UTF-8 as "%" and two digits.
ZVString GetFileName(const ZVString& name)
{
    const ZVStringUTF8 bytes(name);
    ZVString fileName;
    for (const char* byte = bytes; *byte != '\0'; ++byte)
    {
        const auto value = static_cast<unsigned char>(*byte);
        const bool isPlain = (value >= 'a' && value <= 'z') || (value >= 'A' && value <= 'Z') || (value >= '0' && value <= '9') ||
                             value == '-' || value == '_';
        if (isPlain)
            fileName += static_cast<wchar_t>(value);
        else
            fileName += L"%" + ZVString::FromUInt(value, 2, 16);
    }
    return fileName + L".lock";
}
}

CNamedLock::CNamedLock(const ZVString& folder, const ZVString& name, ILogManager& log)
    : m_path(folder.IsEmpty() ? folder : folder + GetFileName(name)), m_log(log)
{
}

bool CNamedLock::Lock(int32_t milliseconds)
{
    using Clock = std::chrono::steady_clock;

    if (m_descriptor != NoDescriptor)
        return true;
    if (!OpenFile())
        return false;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(std::max(milliseconds, 0));
    std::chrono::milliseconds wait = FirstWait;
    while (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0)
    {
        const bool isHeld = errno == EWOULDBLOCK || errno == EINTR;
        if (!isHeld)
            LogFailure("locking");
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (!isHeld || left.count() <= 0)
        {
            Unlock();
            return false;
        }
        std::this_thread::sleep_for(std::min(wait, left));
        wait = std::min(wait * 2, LongestWait);
    }
    return true;
}

void CNamedLock::Unlock()
{
    if (m_descriptor != NoDescriptor)
        close(m_descriptor);
    m_descriptor = NoDescriptor;
}

bool CNamedLock::OpenFile()
{
    constexpr int Flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    const ZVStringUTF8 path(m_path);
    m_descriptor = open(path, Flags, FileMode);
    if (m_descriptor == NoDescriptor && errno == ENOENT && CDataFolder::MakeFoldersOf(path))
        m_descriptor = open(path, Flags, FileMode);
    if (m_descriptor == NoDescriptor)
        LogFailure("opening");
    return m_descriptor != NoDescriptor;
}

void CNamedLock::LogFailure(const char* what) const
{
    const ZVFormatArguments<3> arguments(what, m_path, strerror(errno));
    m_log.LogNarrow(ZVLogCategory::General, L"CNamedLock", "Error %s the lock file %s: %s", arguments.Records(),
                    arguments.Count());
}
