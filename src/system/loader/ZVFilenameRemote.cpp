#include "system/file/ZVFileSystem.h"
#include "system/filename/ZVFilename.h"
#include "system/loader/CFileLoader.h"

namespace
{
// Asks a server about a resource, without its content.
bool AskServer(const ZVFilename& name, int64_t& size)
{
    CFileLoader loader;
    loader.SetRequestOption(ZVRequestHeaders::Method, L"HEAD");
    ZVBuffer nothing;
    const bool isThere = loader.Load(name, nothing);
    size = isThere ? loader.GetResourceSize() : -1;
    return isThere;
}
}

int64_t ZVFilename::GetFileSize() const
{
    if (!GetIsFileRemote())
        return ZVFileSystem::GetFileSize(m_path);
    int64_t size = -1;
    AskServer(*this, size);
    return size;
}

bool ZVFilename::Exists() const
{
    if (!GetIsFileRemote())
        return ZVFileSystem::Exists(m_path);
    int64_t size = -1;
    return AskServer(*this, size);
}
