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

    // Reads from a position as many of that many bytes as are there, and returns how many. A file may give less at once than it
    // has, so it is asked until it gives nothing.
    int64_t ReadAt(int64_t position, void* bytes, int64_t count)
    {
        if (position < 0 || Seek(position) != position)
            return 0;
        int64_t used = 0;
        for (int64_t part = 1; part > 0 && used<count; used += part> 0 ? part : 0)
            part = Read(static_cast<char*>(bytes) + used, count - used);
        return used;
    }
};
