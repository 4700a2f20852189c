#pragma once

#include "system/filename/ZVFilename.h"
#include "system/loader/CFileLoader.h"
#include "system/thread/ZVThread.h"

// Downloads one package on a thread of its own: into a new temporary file, or into a buffer when it is given one. The thread's
// result tells whether it is there. Read the members only after the thread has ended.
class DependencyDownloadThread final : public ZVThread
{
public:
    // The text is what a wait message says. The buffer, which may be null, must outlive the thread.
    DependencyDownloadThread(const ZVString& url, const ZVString& text, ZVBuffer* buffer = nullptr);
    ~DependencyDownloadThread() override;

    // The file. The caller deletes it.
    const ZVString& GetPath() const { return m_target.GetPathOnly(); }
    const CFileLoader& GetLoader() const { return m_loader; }

    void SetStopFlag(bool value) override;

protected:
    bool Run() override;
    // The load uses the members, and ends soon after it is cancelled.
    bool OnStopTimeout() override { return false; }

private:
    ZVFilename m_url;
    ZVFilename m_target;
    ZVBuffer* m_buffer;
    CFileLoader m_loader;
};
