#pragma once

#include <cstdint>

// A file that atoms are read from. Positions and lengths are in bytes.
class CGeneralReader
{
public:
    virtual ~CGeneralReader() = default;

    // Reads up to count bytes and returns how many.
    virtual int64_t Read(void* bytes, int64_t count) = 0;
    // Goes to a position, counted from the start, and returns where the file is then.
    virtual int64_t Seek(int64_t position) = 0;
    virtual int64_t GetLength() = 0;
    virtual bool IsOpen() = 0;
};
