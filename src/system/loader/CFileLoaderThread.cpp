#include "system/loader/CFileLoaderThread.h"

CFileLoaderThreadBase::~CFileLoaderThreadBase()
{
    Stop(EndTimeoutMs);
}

void CFileLoaderThreadBase::SetStopFlag(bool value)
{
    ZVThread::SetStopFlag(value);
    if (value)
        m_loader.Cancel();
}

bool CFileLoaderThreadBase::Run()
{
    return m_loader.Load(m_name, m_buffer);
}

CFileLoaderThread::~CFileLoaderThread()
{
    Stop(EndTimeoutMs);
}

void CFileLoaderThread::SetStopFlag(bool value)
{
    CFileLoaderThreadBase::SetStopFlag(value);
    if (value)
        m_secondLoader.Cancel();
}

bool CFileLoaderThread::Run()
{
    const bool isFirstLoaded = CFileLoaderThreadBase::Run();
    return m_secondLoader.Load(m_secondName, m_secondBuffer) && isFirstLoaded;
}
