#pragma once

#include <cstdint>

// One lock that all processes of the user share by its name. A process that dies gives its locks back. Belongs to one thread.
class IZVNamedLock
{
public:
    // Takes the lock, waiting at most so many milliseconds for it; 0 only tries. False when another one still holds it then, or when
    // the lock cannot be made, which is logged. Taking a lock that this object holds is true.
    virtual bool Lock(int32_t milliseconds) = 0;
    // Gives the lock back, if it is held.
    virtual void Unlock() = 0;
    // Gives the lock back and frees the object.
    virtual void Release() = 0;

protected:
    ~IZVNamedLock() = default;
};

// The named locks of the tools library. May be called from any thread.
class IZVNamedLocks
{
public:
    // A lock, not yet held. Two objects of one name exclude each other, in one process as well. Null when there is no memory.
    virtual IZVNamedLock* CreateLock(const wchar_t* name) = 0;

protected:
    ~IZVNamedLocks() = default;
};
