#include "system/component/DependencyDownloadThread.h"

DependencyDownloadThread::DependencyDownloadThread(const ZVString& url, const ZVString& text, ZVBuffer* buffer)
    : m_url(url), m_buffer(buffer)
{
    m_loader.SetProgress(true, {.Text = text});
}

DependencyDownloadThread::~DependencyDownloadThread()
{
    SetStopFlag(true);
    Stop(NoTimeout);
}

void DependencyDownloadThread::SetStopFlag(bool value)
{
    ZVThread::SetStopFlag(value);
    if (value)
        m_loader.Cancel();
}

bool DependencyDownloadThread::Run()
{
    if (m_buffer != nullptr)
        return m_loader.Load(m_url, *m_buffer);
    return m_loader.LoadToFile(m_url, m_target, ZVLoadToFileMode::Temporary);
}
