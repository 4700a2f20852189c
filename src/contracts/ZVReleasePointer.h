#pragma once

#include <memory>

// An object that a contract hands out is freed by the library that made it, so it has an operation Release and no public
// destructor.

// Calls Release.
struct ZVReleaser
{
    template <class Object>
    void operator()(Object* object) const
    {
        object->Release();
    }
};

// Owns what a contract handed out.
template <class Object>
using ZVReleasePointer = std::unique_ptr<Object, ZVReleaser>;

// The other side: a base for objects made with new, which Release deletes.
template <class Interface>
class ZVReleasable : public Interface
{
public:
    void Release() final { delete this; }

protected:
    ZVReleasable() = default;
    virtual ~ZVReleasable() = default;
};
