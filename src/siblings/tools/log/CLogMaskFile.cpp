#include "siblings/tools/log/CLogMaskFile.h"

#include "siblings/tools/CDataFolder.h"
#include "system/library/ZVDescriptor.h"
#include "system/library/ZVNativeBytes.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace
{
// More than a number of 32 bits needs in any notation.
constexpr size_t MaximumFileSize = 63;
constexpr mode_t FileMode = 0666;

bool WriteFile(const char* path, std::string_view text)
{
    ZVDescriptor file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, FileMode));
    const bool isWritten = file.IsOpen() && write(file.Get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return isWritten && file.Close();
}
}

CLogMaskFile::CLogMaskFile(const ZVString& dataFolder)
{
    if (!dataFolder.IsEmpty())
        m_path = dataFolder + L"Logs/log-mask";
}

bool CLogMaskFile::Parse(const char* text, uint32_t& mask)
{
    static constexpr char Blanks[] = " \t\r\n";
    text += strspn(text, Blanks);
    const bool isHexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const char* const digits = isHexadecimal ? text + 2 : text;
    uint32_t value = 0;
    const auto [end, error] = std::from_chars(digits, digits + strlen(digits), value, isHexadecimal ? 16 : 10);
    if (error != std::errc() || end[strspn(end, Blanks)] != '\0')
        return false;
    mask = value;
    return true;
}

bool CLogMaskFile::Read(uint32_t& mask) const
{
    if (m_path.IsEmpty())
        return false;
    const ZVDescriptor file(open(ZVNativeBytes(m_path), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    char text[MaximumFileSize + 1] = {};
    return file.IsOpen() && read(file.Get(), text, MaximumFileSize) > 0 && Parse(text, mask);
}

bool CLogMaskFile::Write(uint32_t mask) const
{
    if (m_path.IsEmpty())
        return false;
    const ZVNativeBytes path(m_path);
    const ZVNativeBytes temporaryPath(m_path + ZVFormat(L".%d.tmp", getpid()));
    char text[16];
    const int size = snprintf(text, sizeof text, "%u\n", mask);
    if (!CDataFolder::MakeFoldersOf(path))
        return false;
    if (WriteFile(temporaryPath, std::string_view(text, static_cast<size_t>(size))) && rename(temporaryPath, path) == 0)
        return true;
    const int error = errno;
    unlink(temporaryPath);
    errno = error;
    return false;
}

bool CLogMaskFile::Remove() const
{
    return m_path.IsEmpty() || unlink(ZVNativeBytes(m_path)) == 0 || errno == ENOENT;
}
