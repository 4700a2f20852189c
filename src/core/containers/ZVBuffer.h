#pragma once

#include <cstdint>

// A block of bytes that grows. The used bytes come first; the rest, up to the allocated size, is not initialised. A failed
// allocation throws std::bad_alloc and changes nothing.
class ZVBuffer
{
public:
    ZVBuffer() = default;
    ~ZVBuffer();
    ZVBuffer(const ZVBuffer&) = delete;
    ZVBuffer& operator=(const ZVBuffer&) = delete;
    ZVBuffer(ZVBuffer&& other) noexcept;
    ZVBuffer& operator=(ZVBuffer&& other) noexcept;

    // The bytes, or null if nothing has been allocated yet.
    uint8_t* GetData() { return m_data; }
    const uint8_t* GetData() const { return m_data; }
    int64_t GetUsed() const { return m_used; }
    int64_t GetAllocated() const { return m_allocated; }
    bool IsEmpty() const { return m_used == 0; }

    // Sets the number of used bytes, limited to what is allocated.
    void SetUsed(int64_t count);
    // Makes the allocation exactly size bytes large, if it is smaller. All bytes and the used count stay.
    void Grow(int64_t size);
    // Appends bytes, which may lie in this buffer; a count below 1 appends nothing. Many small calls take linear time in total.
    void Append(const void* bytes, int64_t count);
    // Sets the used count to 0 and keeps the allocation.
    void Empty() { m_used = 0; }

private:
    uint8_t* m_data = nullptr;
    int64_t m_used = 0;
    int64_t m_allocated = 0;
};
