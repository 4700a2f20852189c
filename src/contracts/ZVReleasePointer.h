#pragma once

#include <memory>

// What a contract hands out is freed by the library that made it, so it has an operation Release in the place of a visible
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

// The other side: an object made with new that goes with its Release.
template <class Interface>
class ZVReleasable : public Interface
{
public:
    void Release() final { delete this; }

protected:
    ZVReleasable() = default;
    virtual ~ZVReleasable() = default;
};
