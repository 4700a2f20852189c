#include "siblings/tools/CToolsLibrary.h"

#include "siblings/tools/CDataFolder.h"

#include <cstdlib>
#include <new>

CToolsLibrary& CToolsLibrary::Get()
{
    static CToolsLibrary& s_library = *new CToolsLibrary();
    return s_library;
}

bool CToolsLibrary::Initialize(int32_t, IZVApplicationInformation* applicationInformation)
{
    if (m_settings.has_value())
        return true;
    try
    {
        m_applicationInformation.emplace(applicationInformation);
        const ZVString dataFolder = CDataFolder::Find(m_applicationInformation->GetDataDirectory());
        m_logManager.emplace(dataFolder);
        m_settings.emplace(dataFolder, *m_logManager);
        m_namedLocks.emplace(dataFolder, *m_logManager);
    }
    catch (const std::bad_alloc&)
    {
        m_loadError = L"There is not enough memory";
        return false;
    }
    // Closing the database removes its journal.
    atexit([] { Get().m_settings->Close(); });
    return true;
}

IZVSettings* CToolsLibrary::GetSettings(bool)
{
    return Pointer(m_settings);
}

ILogManager* CToolsLibrary::GetLogManager(bool)
{
    return Pointer(m_logManager);
}
