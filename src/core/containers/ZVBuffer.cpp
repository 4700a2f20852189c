#include "core/containers/ZVBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

ZVBuffer::~ZVBuffer()
{
    free(m_data);
}

ZVBuffer::ZVBuffer(ZVBuffer&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)),
      m_used(std::exchange(other.m_used, 0)),
      m_allocated(std::exchange(other.m_allocated, 0))
{
}

ZVBuffer& ZVBuffer::operator=(ZVBuffer&& other) noexcept
{
    std::swap(m_data, other.m_data);
    std::swap(m_used, other.m_used);
    std::swap(m_allocated, other.m_allocated);
    return *this;
}

void ZVBuffer::SetUsed(int64_t count)
{
    m_used = std::clamp<int64_t>(count, 0, m_allocated);
}

void ZVBuffer::Grow(int64_t size)
{
    if (size <= m_allocated)
        return;
    void* const grown = realloc(m_data, static_cast<size_t>(size));
    if (grown == nullptr)
        throw std::bad_alloc();
    m_data = static_cast<uint8_t*>(grown);
    m_allocated = size;
}

void ZVBuffer::Append(const void* bytes, int64_t count)
{
    if (count < 1 || bytes == nullptr)
        return;
    if (count > INT64_MAX - m_used)
        throw std::bad_alloc();

    const uint8_t* source = static_cast<const uint8_t*>(bytes);
    if (m_used + count > m_allocated)
    {
        // A source below the data wraps around to a large offset, which is outside the data too.
        const uintptr_t offset = reinterpret_cast<uintptr_t>(source) - reinterpret_cast<uintptr_t>(m_data);
        const bool isOwn = offset < static_cast<uintptr_t>(m_allocated);
        Grow(std::max(m_used + count, m_allocated + m_allocated / 2));
        if (isOwn)
            source = m_data + offset;
    }
    memmove(m_data + m_used, source, static_cast<size_t>(count));
    m_used += count;
}
