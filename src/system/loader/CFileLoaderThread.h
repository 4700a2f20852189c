#pragma once

#include "core/containers/ZVBuffer.h"
#include "system/filename/ZVFilename.h"
#include "system/loader/CFileLoader.h"
#include "system/thread/ZVThread.h"

// A thread that loads a resource into memory. Its result tells whether that succeeded. The members are set up before the start and
// read after the end; while the thread runs only the loader's Cancel may be called. It is started once, because a stop cancels its
// loader for good.
class CFileLoaderThreadBase : public ZVThread
{
public:
    explicit CFileLoaderThreadBase(const ZVFilename& name) : m_name(name) {}
    ~CFileLoaderThreadBase() override;

    CFileLoader& GetLoader() { return m_loader; }
    const ZVBuffer& GetBuffer() const { return m_buffer; }

    // A stop also cancels the load.
    void SetStopFlag(bool value) override;

protected:
    bool Run() override;
    // A thread that still uses the members is not abandoned.
    bool OnStopTimeout() override { return false; }

    // How long a destructor waits for the thread, in milliseconds.
    static constexpr int32_t EndTimeoutMs = 10000;

private:
    ZVFilename m_name;
    CFileLoader m_loader;
    ZVBuffer m_buffer;
};

// Loads a second resource after the first, with a loader and a buffer of its own.
class CFileLoaderThread final : public CFileLoaderThreadBase
{
public:
    CFileLoaderThread(const ZVFilename& name, const ZVFilename& secondName)
        : CFileLoaderThreadBase(name), m_secondName(secondName)
    {
    }
    ~CFileLoaderThread() override;

    CFileLoader& GetSecondLoader() { return m_secondLoader; }
    const ZVBuffer& GetSecondBuffer() const { return m_secondBuffer; }

    void SetStopFlag(bool value) override;

protected:
    // True when both resources were loaded.
    bool Run() override;

private:
    ZVFilename m_secondName;
    CFileLoader m_secondLoader;
    ZVBuffer m_secondBuffer;
};
