#include "system/loader/CFileReplacement.h"

#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"

namespace
{
constexpr uint32_t PermissionBits = 07777;
}

CFileReplacement::CFileReplacement(const ZVString& path, const wchar_t* extension)
    : m_path(CFileSink::FollowLinks(path)),
      m_sink(ZVFilename::FromPath(m_path).GetDirectory(), ZVFilename::FromPath(m_path).GetNameOnly(), extension)
{
    m_sink.SetMode(ZVFileInfo(m_path).GetMode() & PermissionBits);
}

bool CFileReplacement::Commit()
{
    if (!ZVFileSystem::MoveFile(m_sink.GetPath(), m_path))
        return false;
    m_sink.Keep();
    return true;
}
