#pragma once

#include "siblings/reader/CReader.h"

// Reads bytes in memory, which stay with the caller.
class CMemoryReader final : public CReader
{
public:
    CMemoryReader(const void* bytes, int64_t count) : m_bytes(static_cast<const uint8_t*>(bytes)), m_count(count) {}

    bool Open() override;
    int64_t Read(void* bytes, int64_t count) override;
    int64_t GetSize() override { return m_count; }

private:
    const uint8_t* m_bytes;
    int64_t m_count;
};
