#pragma once

#include <cstdint>

// A byte buffer of one library that another library may fill. The order of the virtual functions is fixed.
class IZVDllBuffer
{
public:
    virtual ~IZVDllBuffer() = default;
    // Makes room for size bytes in total and returns the start of the bytes, which may have moved; null if there is no memory.
    virtual uint8_t* Grow(int64_t size) = 0;
    // The bytes, and how many of them are in use.
    virtual uint8_t* GetData() = 0;
    virtual int64_t GetUsed() = 0;
    virtual void SetUsed(int64_t count) = 0;
};
