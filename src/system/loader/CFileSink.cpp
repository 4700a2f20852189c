#include "system/loader/CFileSink.h"

#include "system/file/ZVFileSystem.h"

#include <cerrno>

CFileSink::CFileSink(const ZVString& path) : m_path(path), m_existingSize(ZVFileSystem::GetFileSize(path)) {}

CFileSink::CFileSink(const ZVString& directory, const ZVString& base, const ZVString& extension)
    : m_path(ZVFileSystem::GetUniqueFilename(directory, base.Left(MaximumNamePart), extension.Left(MaximumNamePart))),
      m_existingSize(-1),
      m_creation(ZVFileCreation::CreateNew)
{
}

void CFileSink::Discard()
{
    m_file.Close();
    if (m_wasOpened && m_existingSize < 0)
        ZVFileSystem::DeleteFile(m_path);
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

bool CFileSink::Close(bool isWhole)
{
    return (!isWhole || OpenOnce()) && m_file.Close();
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
    return m_file.Open(ZVFilename::FromPath(m_path), ZVFileAccess::Write, ZVFileShare::None, m_creation);
}
