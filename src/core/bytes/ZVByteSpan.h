#pragma once

#include <cstdint>

// Bytes in memory that a cursor reads. They belong to somebody else, who outlives the span.
class ZVByteSpan
{
public:
    ZVByteSpan() = default;
    ZVByteSpan(const void* bytes, int64_t size) : m_bytes(static_cast<const uint8_t*>(bytes)), m_size(size < 0 ? 0 : size) {}

    int64_t GetSize() const { return m_size; }

    // The bytes from a position on, or null when not all of them are there.
    const uint8_t* Find(int64_t position, int64_t count) const
    {
        if (position < 0 || position > m_size || count < 0 || count > m_size - position)
            return nullptr;
        return m_bytes + position;
    }

    // The part from a position on, of at most count bytes; empty when the position is outside.
    ZVByteSpan Part(int64_t position, int64_t count) const
    {
        if (position < 0 || position > m_size)
            return {};
        return {m_bytes + position, count < m_size - position ? count : m_size - position};
    }

private:
    const uint8_t* m_bytes = nullptr;
    int64_t m_size = 0;
};
