#include "siblings/tools/locks/CNamedLock.h"

#include "core/string/ZVStringUTF8.h"
#include "siblings/tools/CDataFolder.h"
#include "system/library/ZVNativeBytes.h"
#include "system/log/ZVLog.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"CNamedLock"};

constexpr mode_t FileMode = 0600;

// How long to wait between two tries, at first and at most: a lock that is held is usually held for seconds or minutes.
constexpr std::chrono::milliseconds FirstWait {5};
constexpr std::chrono::milliseconds LongestWait {100};

// The file name for a lock: letters, digits, "-" and "_" stay, and every other byte of the UTF-8 becomes "%" and two hexadecimal
// digits.
ZVString GetFileName(const ZVString& name)
{
    const ZVStringUTF8 bytes(name);
    ZVString fileName;
    for (const char byte : std::string_view(bytes.Get()))
    {
        const auto value = static_cast<unsigned char>(byte);
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

    if (m_file.IsOpen())
        return true;
    if (!OpenFile())
        return false;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(std::max(milliseconds, 0));
    std::chrono::milliseconds wait = FirstWait;
    while (flock(m_file.Get(), LOCK_EX | LOCK_NB) != 0)
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
    m_file.Close();
}

bool CNamedLock::OpenFile()
{
    constexpr int Flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    const ZVNativeBytes path(m_path);
    m_file = ZVDescriptor(open(path, Flags, FileMode));
    if (!m_file.IsOpen() && errno == ENOENT && CDataFolder::MakeFoldersOf(path))
        m_file = ZVDescriptor(open(path, Flags, FileMode));
    if (!m_file.IsOpen())
        LogFailure("opening");
    return m_file.IsOpen();
}

void CNamedLock::LogFailure(const char* what) const
{
    Source.LogTo(m_log, "Error %s the lock file %s: %s", what, m_path, strerror(errno));
}
