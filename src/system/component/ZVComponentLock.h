#pragma once

#include "contracts/IZVNamedLocks.h"
#include "contracts/ZVReleasePointer.h"

#include <cstdint>

// A lock that the processes of the product share by its name, held as long as the object lives. Without the tools library there
// are no such locks, and nothing waits for one.
class ZVComponentLock
{
public:
    // Keeps two processes from fetching a component at once. Every process of the product knows the lock by this name.
    static constexpr wchar_t Fetching[] = L"Zivora DS Filter Downloading Lock";
    // Keeps two installations from changing the folder of the components at once, even when one of them runs without the other
    // lock. It is held only for moments.
    static constexpr wchar_t Replacing[] = L"Zivora Component Replacing Lock";

    // How long a process waits for another one that fetches or replaces a component.
    static constexpr int32_t TimeoutMs = 120000;

    // Waits at most that many milliseconds for the lock; 0 only tries.
    explicit ZVComponentLock(const wchar_t* name, int32_t timeoutMs = TimeoutMs);

    bool IsHeld() const { return m_isHeld; }
    // True when there are such locks, but this one was not free in time.
    bool IsRefused() const { return m_lock != nullptr && !m_isHeld; }

private:
    const ZVReleasePointer<IZVNamedLock> m_lock;
    const bool m_isHeld;
};
