#include "system/library/CProcessInfo.h"

#include "system/library/CProcessBlockSweep.h"
#include "system/library/ZVInstallFolder.h"
#include "system/library/ZVProcessTime.h"
#include "system/log/ZVLogScope.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <cwchar>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"CProcessInfo"};
constexpr ZVLogSource SetInstallPathSource {ZVLogCategory::General, L"CProcessInfo::SetInstallPathFromProductName"};

constexpr wchar_t ApplicationDataFolder[] = L"Application Data/";

// A process that finds the block of a dead process under its own name removes that block and tries once more.
constexpr int32_t MaximumAttempts = 2;

// Used when no block can be shared. Its pages cost nothing until then.
constinit CProcessBlock s_privateBlock {};

bool HasTerminator(const wchar_t (&path)[CProcessBlock::PathCapacity])
{
    return wmemchr(path, L'\0', CProcessBlock::PathCapacity) != nullptr;
}

// False for a block that a dead process with the same id left: such a block is older than this process.
bool IsOfThisProcess(CProcessBlock& block, pid_t processId)
{
    return std::atomic_ref(block.State).load(std::memory_order_acquire) == CProcessBlock::Content::Filled &&
           block.ProcessId == processId && block.CreationTime >= ZVProcessTime::GetProcessStart() &&
           HasTerminator(block.InstallPath) && HasTerminator(block.ApplicationDataPath);
}

// Removes the block's name when the process ends without having done so. The description itself is not freed: the end of the
// process frees all memory at once.
class BlockRemover
{
public:
    ~BlockRemover() { CProcessInfo::Get().Remove(); }
};
}

CProcessInfo& CProcessInfo::Get()
{
    static CProcessInfo& s_instance = *new CProcessInfo();
    static const BlockRemover s_remover;
    return s_instance;
}

CProcessInfo::CProcessInfo() : m_processId(getpid())
{
    if (OpenShared())
        return;
    m_memory.Close();
    Fill(&s_privateBlock);
}

CProcessInfo::~CProcessInfo()
{
    Remove();
}

bool CProcessInfo::OpenShared()
{
    const ZVString name = CProcessBlock::GetName(m_processId);
    for (int32_t attempt = 0; attempt < MaximumAttempts; ++attempt)
    {
        if (m_memory.Create(name, CProcessBlock::Size))
        {
            m_isCreator = true;
            SweepProcessBlocks(m_processId);
            if (Fill(static_cast<CProcessBlock*>(m_memory.GetData())))
                return true;
            Remove();
            return false;
        }
        if (m_memory.GetError() != EEXIST)
            return false;
        if (AttachShared())
            return true;
        // Only a block of the user's own is removed. It is not filled again, because somebody may still have it mapped.
        if (m_memory.GetData() == nullptr && m_memory.GetError() != EINVAL)
            return false;
        ZVSharedMemory::Remove(name);
    }
    return false;
}

// Opens the block that another copy of this code in the same process has made.
bool CProcessInfo::AttachShared()
{
    if (!m_memory.Open(CProcessBlock::GetName(m_processId), CProcessBlock::Size))
        return false;
    CProcessBlock* const block = static_cast<CProcessBlock*>(m_memory.GetData());
    if (!IsOfThisProcess(*block, m_processId))
        return false;
    m_block = block;
    return true;
}

// Fills a block and uses it as the description. False when the system has no room for its pages.
bool CProcessInfo::Fill(CProcessBlock* block)
{
    m_block = block;
    if (!Reserve(&block->AttachCounter, sizeof block->AttachCounter))
        return false;
    if (!SetInstallPathFromProductName({}) && !SetInstallPath(ZVInstallFolder::Fixed))
        return false;
    // The first page is there now, with the start of the install path.
    block->ProcessId = m_processId;
    block->CreationTime = ZVProcessTime::GetNow();
    std::atomic_ref(block->State).store(CProcessBlock::Content::Filled, std::memory_order_release);
    return true;
}

bool CProcessInfo::SetInstallPathFromProductName(const ZVString& productName)
{
    ZVLogScope scope(SetInstallPathSource, true);
    const ZVString folder = ZVInstallFolder::Find(productName);
    const bool isSet = !folder.IsEmpty() && SetInstallPath(folder);
    scope.SetResult(isSet);
    return isSet;
}

// Sets the install path and what depends on it, or changes nothing.
bool CProcessInfo::SetInstallPath(const ZVString& path)
{
    return MakeRoom(m_block->InstallPath, path) && WritePath(m_block->ApplicationDataPath, path + ApplicationDataFolder) &&
           WritePath(m_block->InstallPath, path);
}

bool CProcessInfo::SetApplicationDataPath(const ZVString& path)
{
    return WritePath(m_block->ApplicationDataPath, path);
}

bool CProcessInfo::MakeRoom(const wchar_t* place, const ZVString& path)
{
    const size_t capacity = static_cast<size_t>(path.GetLength()) + 1;
    return capacity <= CProcessBlock::PathCapacity && Reserve(place, capacity * sizeof(wchar_t));
}

bool CProcessInfo::WritePath(wchar_t* place, const ZVString& path)
{
    if (!MakeRoom(place, path))
        return false;
    wmemcpy(place, path, static_cast<size_t>(path.GetLength()) + 1);
    return true;
}

bool CProcessInfo::Reserve(const void* start, size_t size)
{
    const ptrdiff_t offset = static_cast<const std::byte*>(start) - reinterpret_cast<const std::byte*>(m_block);
    return !IsShared() || m_memory.Reserve(static_cast<size_t>(offset), size);
}

int32_t CProcessInfo::TakeNextAttachValue()
{
    return std::atomic_ref(m_block->AttachCounter).fetch_add(1) + 1;
}

void CProcessInfo::LogStorage() const
{
    if (!IsShared())
        Source.Log("The process information is not shared with the libraries: %s", strerror(m_memory.GetError()));
}

void CProcessInfo::Remove()
{
    if (m_isCreator && m_processId == getpid())
        ZVSharedMemory::Remove(CProcessBlock::GetName(m_processId));
    m_isCreator = false;
}
