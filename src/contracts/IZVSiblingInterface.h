#pragma once

#include <cstdint>

// How the interface that a library's getter returns begins, whatever the library is for: the first virtual function of each is
// called after the library is loaded. The tools library has an Initialize of its own in that place.
class IZVSiblingInterface
{
public:
    // Called once after each load. flag is passed on unchanged.
    virtual void Initialize(int32_t flag) = 0;

protected:
    ~IZVSiblingInterface() = default;
};
