#include "system/file/ZVFileInfo.h"

#include "system/filename/ZVNativePath.h"

#include <cerrno>

namespace
{
constexpr double NanosecondsPerSecond = 1e9;
}

bool ZVFileInfo::Load(const ZVString& path)
{
    return LoadNative(ZVNativePath(path));
}

bool ZVFileInfo::LoadNative(const char* path)
{
    m_isFound = stat(path, &m_status) == 0 || lstat(path, &m_status) == 0;
    if (!m_isFound)
    {
        const int error = errno;
        m_status = {};
        m_filename = ZVFilename();
        errno = error;
        return false;
    }
    ZVString text = ZVNativePath::ToText(path);
    if (IsDirectory() && !text.EndsWith(L'/'))
        text.AppendCharacter(L'/');
    m_filename = ZVFilename::FromPath(text);
    return true;
}

ZVString ZVFileInfo::GetName() const
{
    ZVString name = GetPath();
    name.TrimRight(L'/');
    return name.GetAfterLast(L"/", true);
}

double ZVFileInfo::GetModificationTime() const
{
    return static_cast<double>(m_status.st_mtim.tv_sec) + static_cast<double>(m_status.st_mtim.tv_nsec) / NanosecondsPerSecond;
}
