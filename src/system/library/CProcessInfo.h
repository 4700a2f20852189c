#pragma once

#include "core/string/ZVString.h"
#include "system/library/CProcessBlock.h"
#include "system/library/ZVSharedMemory.h"

#include <sys/types.h>

// The description of the process, the same for the program and all its libraries. It is a block of shared memory whose name is
// made of the product version and the process id, so that each library finds it without being passed a pointer. Whoever comes
// first makes and fills it. Where no block can be shared, the description is private to this copy of the code and works the same.
// Texts stay valid as long as the object, and change only before other threads start.
class CProcessInfo
{
public:
    // The description, opened by the first call in this copy of the code.
    static CProcessInfo& Get();

    CProcessInfo();
    ~CProcessInfo();
    CProcessInfo(const CProcessInfo&) = delete;
    CProcessInfo& operator=(const CProcessInfo&) = delete;

    // The folder that holds the product's libraries.
    const wchar_t* GetInstallPath() const { return m_block->InstallPath; }
    // Sets the folder that is found for the product, and all paths that depend on it. False when there is none; nothing changes
    // then.
    bool SetInstallPathFromProductName(const ZVString& productName);

    // The folder "Application Data" in the install path, unless another one was set.
    const wchar_t* GetApplicationDataPath() const { return m_block->ApplicationDataPath; }
    // The path ends in "/". False when it is too long.
    bool SetApplicationDataPath(const ZVString& path);

    // Notes that the program has begun its start-up. Until then some of its libraries may be loaded, and no more.
    void MarkStarted() { m_block->IsStarted = true; }
    bool IsStarted() const { return m_block->IsStarted; }

    // The number of the next library load, from 1 up; no two loads in a process get the same.
    int32_t TakeNextAttachValue();

    // True when other copies of the code in this process see the description too.
    bool IsShared() const { return m_block == m_memory.GetData(); }
    // When the description is private, logs why.
    void LogStorage() const;

    // Removes the block's name. Only the process and the copy of the code that made the block do so, and only once; otherwise
    // nothing happens. The description stays readable.
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
