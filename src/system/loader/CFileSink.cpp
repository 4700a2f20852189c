#include "system/loader/CFileSink.h"

#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVNativePath.h"

#include <cerrno>
#include <climits>
#include <unistd.h>

namespace
{
// As many links in a row as the system itself follows.
constexpr int32_t MaximumLinks = 40;
}

CFileSink::CFileSink(const ZVString& path) : m_path(FollowLinks(path)), m_existingSize(ZVFileSystem::GetFileSize(m_path)) {}

CFileSink::CFileSink(const ZVString& directory, const ZVString& base, const ZVString& extension)
    : m_path(ZVFileSystem::GetUniqueFilename(directory, base.Left(MaximumNamePart), extension.Left(MaximumNamePart))),
      m_existingSize(-1),
      m_creation(ZVFileCreation::CreateNew)
{
}

ZVString CFileSink::FollowLinks(const ZVString& path)
{
    ZVString file = path;
    for (int32_t links = 0; links < MaximumLinks; ++links)
    {
        char target[PATH_MAX];
        const ssize_t length = readlink(ZVNativePath(file), target, sizeof target - 1);
        if (length < 1)
            break;
        target[length] = '\0';
        const ZVString next = ZVNativePath::ToText(target);
        file = next.StartsWith(L'/') ? next : ZVFilename::FromPath(file).GetDirectory() + next;
    }
    return file;
}

void CFileSink::Keep()
{
    m_file.Close();
    m_wasOpened = false;
}

void CFileSink::Discard()
{
    m_file.Close();
    if (m_wasOpened && m_existingSize < 0)
        ZVFileSystem::DeleteFile(m_path);
    m_wasOpened = false;
}

void CFileSink::Erase()
{
    m_file.Close();
    if (m_wasOpened && m_existingSize >= 0)
        m_file.Open(ZVFilename::FromPath(m_path), ZVFileAccess::Write, ZVFileShare::None, ZVFileCreation::CreateAndTruncate);
    Discard();
}

bool CFileSink::CanResume(int64_t resourceSize, int64_t start)
{
    m_isComplete = m_existingSize == resourceSize;
    if (m_isComplete)
        return false;
    if (start == m_existingSize)
        m_creation = ZVFileCreation::Append;
    return start == m_existingSize || start == 0;
}

int64_t CFileSink::Write(const void* bytes, int64_t count)
{
    return OpenOnce() && m_file.Write(bytes, count) ? count : 0;
}

bool CFileSink::Close(ZVLoadEnd end)
{
    return (end != ZVLoadEnd::Whole || OpenOnce()) && m_file.Close();
}

bool CFileSink::OpenOnce()
{
    if (m_wasOpened)
        return m_file.IsOpen();
    m_wasOpened = Open();
    for (int32_t tries = 1; !m_wasOpened && errno == EEXIST && tries < MaximumTries; ++tries)
    {
        const ZVFilename taken = ZVFilename::FromPath(m_path);
        m_path = ZVFileSystem::GetUniqueFilename(taken.GetDirectory(), taken.GetNameOnly(), taken.GetExtension());
        m_wasOpened = Open();
    }
    return m_wasOpened;
}

bool CFileSink::Open()
{
    if (!m_file.Open(ZVFilename::FromPath(m_path), ZVFileAccess::Write, ZVFileShare::None, m_creation))
        return false;
    if (m_mode != OwnMode)
        ZVFileSystem::SetFileAttributes(m_path, m_mode);
    return true;
}
