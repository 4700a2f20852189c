#pragma once

#include <cstdint>

// What the interface that a library's getter gives begins with, whatever the library is for: the first virtual function of every
// such interface is called after the load. The tools library begins in the same place with one of its own.
class IZVSiblingInterface
{
public:
    // Called once after each load. flag is passed on as the process got it.
    virtual void Initialize(int32_t flag) = 0;

protected:
    ~IZVSiblingInterface() = default;
};
