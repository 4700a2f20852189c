#pragma once

#include "core/string/ZVString.h"
#include "system/library/CProcessBlock.h"
#include "system/library/ZVSharedMemory.h"

#include <sys/types.h>

// The description of the process that the program and all its libraries see alike. It is a block of shared memory under a name
// made of the product version and the process id, so that each library finds it without a pointer being passed; whoever comes
// first makes and fills it. Where no block can be shared, the description is private to this copy of the code and works the same.
// Texts stay valid as long as the object, and are changed only before other threads start.
class CProcessInfo
{
public:
    // The description as this copy of the code sees it, opened by the first call.
    static CProcessInfo& Get();

    CProcessInfo();
    ~CProcessInfo();
    CProcessInfo(const CProcessInfo&) = delete;
    CProcessInfo& operator=(const CProcessInfo&) = delete;

    // The folder that holds the product's libraries.
    const wchar_t* GetInstallPath() const { return m_block->InstallPath; }
    // Takes the folder that is found for the product, with all paths that depend on it. False when none is; nothing changes then.
    bool SetInstallPathFromProductName(const ZVString& productName);

    // The folder "Application Data" of the install path, or what was set.
    const wchar_t* GetApplicationDataPath() const { return m_block->ApplicationDataPath; }
    // The path ends in "/". False when it is too long.
    bool SetApplicationDataPath(const ZVString& path);

    // The program has begun to start up; until then the process only has some of its libraries loaded.
    void MarkStarted() { m_block->IsStarted = true; }
    bool IsStarted() const { return m_block->IsStarted; }

    // The number of the next library load, from 1 on; no two loads of a process get the same.
    int32_t TakeNextAttachValue();

    // True when other copies of the code in this process see the description too.
    bool IsShared() const { return m_block == m_memory.GetData(); }
    // Logs why it is private, when it is.
    void LogStorage() const;

    // Takes the block's name away, in the process and the copy that made it; elsewhere, and a second time, nothing happens. The
    // description stays readable.
    void Remove();

private:
    bool OpenShared();
    bool AttachShared();
    bool Fill(CProcessBlock* block);
    bool SetInstallPath(const ZVString& path);
    bool MakeRoom(const wchar_t* place, const ZVString& path);
    bool WritePath(wchar_t* place, const ZVString& path);
    bool Reserve(const void* start, size_t size);

    ZVSharedMemory m_memory;
    CProcessBlock* m_block = nullptr;
    pid_t m_processId;
    bool m_isCreator = false;
};
