#pragma once

#include "core/containers/ZVBuffer.h"

#include <new>

// The bytes of a file that is being encoded.
class CByteSink
{
public:
    // Appends bytes. False if there is no memory: C libraries call this, and no exception can pass through them.
    bool Append(const void* bytes, size_t count) noexcept
    {
        try
        {
            m_bytes.Append(bytes, static_cast<int64_t>(count));
            return true;
        }
        catch (const std::bad_alloc&)
        {
            return false;
        }
    }

    const uint8_t* GetData() const { return m_bytes.GetData(); }
    int64_t GetSize() const { return m_bytes.GetUsed(); }

private:
    ZVBuffer m_bytes;
};
