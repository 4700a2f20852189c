#pragma once

#include <cstdint>

// A lock that all processes of the user share by its name. It is released when its process dies. Belongs to one thread.
class IZVNamedLock
{
public:
    // Takes the lock, waiting at most that many milliseconds; 0 does not wait. False if someone else still holds it then, or if
    // the lock cannot be created, which is logged. True if this object already holds it.
    virtual bool Lock(int32_t milliseconds) = 0;
    // Releases the lock, if it is held.
    virtual void Unlock() = 0;
    // Releases the lock and frees the object.
    virtual void Release() = 0;

protected:
    ~IZVNamedLock() = default;
};

// The named locks of the tools library. May be called from any thread.
class IZVNamedLocks
{
public:
    // Returns a lock, which is not held yet. Two objects with the same name exclude each other, even in one process. Null if
    // there is no memory.
    virtual IZVNamedLock* CreateLock(const wchar_t* name) = 0;

protected:
    ~IZVNamedLocks() = default;
};
