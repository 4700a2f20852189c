#include "system/component/ZVComponentLock.h"

#include "contracts/IZVTools.h"
#include "core/ZVToolsPointer.h"

namespace
{
IZVNamedLock* Create(const wchar_t* name)
{
    IZVNamedLocks* const locks = g_pZVTools == nullptr ? nullptr : g_pZVTools->GetNamedLocks(true);
    return locks == nullptr ? nullptr : locks->CreateLock(name);
}
}

ZVComponentLock::ZVComponentLock(const wchar_t* name, int32_t timeoutMs)
    : m_lock(Create(name)), m_isHeld(m_lock != nullptr && m_lock->Lock(timeoutMs))
{
}
