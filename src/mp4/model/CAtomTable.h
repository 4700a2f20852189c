#pragma once

#include "mp4/model/CAtomBytes.h"

#include <cstdint>

// The rows of a table, as the big-endian bytes that stand in the file. Long films have some hundred thousand rows, so they are
// read in one piece and taken apart when one is asked for.
class CAtomTable
{
public:
    explicit CAtomTable(int32_t rowWidth = 4) : m_rowWidth(rowWidth) {}

    int32_t GetRowWidth() const { return m_rowWidth; }
    // Of a table that is not read yet.
    void SetRowWidth(int32_t rowWidth) { m_rowWidth = rowWidth; }
    uint32_t GetCount() const { return static_cast<uint32_t>(m_bytes.GetCount() / m_rowWidth); }

    // A number in a row that is there, by its offset in the row and its width in bytes.
    template <class Integer>
    Integer Get(uint32_t row, int32_t offset = 0) const
    {
        const uint8_t* const bytes = m_bytes.View().data() + static_cast<size_t>(row) * static_cast<size_t>(m_rowWidth) + offset;
        uint64_t value = 0;
        for (size_t index = 0; index < sizeof(Integer); ++index)
            value = value << 8 | bytes[index];
        return static_cast<Integer>(value);
    }
    template <class Integer>
    void Set(uint32_t row, Integer value, int32_t offset = 0)
    {
        uint8_t* const bytes = m_bytes.GetData() + static_cast<size_t>(row) * static_cast<size_t>(m_rowWidth) + offset;
        for (size_t index = 0; index < sizeof(Integer); ++index)
            bytes[index] = static_cast<uint8_t>(static_cast<uint64_t>(value) >> 8 * (sizeof(Integer) - 1 - index));
    }

    CAtomBytes& GetBytes() { return m_bytes; }
    const CAtomBytes& GetBytes() const { return m_bytes; }

private:
    CAtomBytes m_bytes;
    int32_t m_rowWidth;
};
