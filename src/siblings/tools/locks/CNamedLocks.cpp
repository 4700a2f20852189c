#include "siblings/tools/locks/CNamedLocks.h"

#include "siblings/tools/locks/CNamedLock.h"

#include <new>

CNamedLocks::CNamedLocks(const ZVString& dataFolder, ILogManager& log)
    : m_folder(dataFolder.IsEmpty() ? dataFolder : dataFolder + L"Locks/"), m_log(log)
{
}

IZVNamedLock* CNamedLocks::CreateLock(const wchar_t* name)
{
    try
    {
        return new CNamedLock(m_folder, name, m_log);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}
