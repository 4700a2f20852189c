#include "system/loader/CFileSink.h"

#include "system/file/ZVFileSystem.h"

CFileSink::CFileSink(const ZVString& path) : m_path(path), m_existingSize(ZVFileSystem::GetFileSize(path)) {}

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

bool CFileSink::Close()
{
    return OpenOnce() && m_file.Close();
}

bool CFileSink::OpenOnce()
{
    if (m_wasOpened)
        return m_file.IsOpen();
    ZVFilename name;
    name.SetListedPath(m_path);
    m_wasOpened = m_file.Open(name, ZVFileAccess::Write, ZVFileShare::None, m_creation);
    return m_wasOpened;
}
