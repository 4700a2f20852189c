#pragma once

#include "mp4/model/CAtomBytes.h"

#include <bit>
#include <cstdint>
#include <cstring>

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
        Integer value;
        memcpy(&value, bytes, sizeof value);
        return SwapBytes(value);
    }
    // The first row, from one on, whose number does not meet a condition, or the count of all rows. Of a table with that one number
    // in each row.
    template <class Integer, class Condition>
    uint32_t SkipWhile(uint32_t row, Condition condition) const
    {
        const uint8_t* const bytes = m_bytes.View().data();
        const uint32_t count = GetCount();
        for (; row < count; ++row)
        {
            Integer value;
            memcpy(&value, bytes + size_t {row} * sizeof value, sizeof value);
            if (!condition(SwapBytes(value)))
                break;
        }
        return row;
    }
    template <class Integer>
    void Set(uint32_t row, Integer value, int32_t offset = 0)
    {
        uint8_t* const bytes = m_bytes.GetData() + static_cast<size_t>(row) * static_cast<size_t>(m_rowWidth) + offset;
        value = SwapBytes(value);
        memcpy(bytes, &value, sizeof value);
    }

    // Adds rows of zeros, or those of a table whose rows are as wide. Throws when there would be more than 32 bits count.
    void AddRows(uint32_t count);
    void AddRows(const CAtomTable& other);
    // Drops the rows from one on.
    void Truncate(uint32_t count);

    CAtomBytes& GetBytes() { return m_bytes; }
    const CAtomBytes& GetBytes() const { return m_bytes; }

private:
    // Between the order of the file and that of the machine.
    template <class Integer>
    static Integer SwapBytes(Integer value)
    {
        static_assert(std::endian::native == std::endian::little);
        if constexpr (sizeof(Integer) == 8)
            return static_cast<Integer>(__builtin_bswap64(static_cast<uint64_t>(value)));
        else if constexpr (sizeof(Integer) == 4)
            return static_cast<Integer>(__builtin_bswap32(static_cast<uint32_t>(value)));
        else
            return static_cast<Integer>(__builtin_bswap16(static_cast<uint16_t>(value)));
    }

    CAtomBytes m_bytes;
    int32_t m_rowWidth;
};
