#pragma once

#include "core/bytes/ZVByteSpan.h"

#include <bit>
#include <cstdint>
#include <string_view>
#include <type_traits>

// What happens when a read does not fit between the position and the end.
//
// A number that is not there is 0, and the position stays before it; a run of bytes that is not there is empty, and the position
// moves on past it. Formats whose records are found by their lengths go on with the next record.
struct ZVZeroPastEnd
{
    static void OnPastEnd() {}
};

// A position in foreign bytes, and the only way to read them: nothing is ever read outside the source, wherever the position and
// the sizes in a file lead.
//
// Its kind is the format's: the order of a number's bytes, and the policy for a read that does not fit. A policy has a static
// function OnPastEnd, which returns (see ZVZeroPastEnd) or throws; then the position stays. The source gives the bytes; it has
//
//   const uint8_t* Find(int64_t position, int64_t count)
//
// which returns that many bytes in one piece, valid until the next call, or null when not all of them are there.
//
// Positions count bytes from the start of the source. They have 64 bits and may be anything; a negative one counts as past the
// end.
template <std::endian Order, class EndPolicy, class ByteSource = ZVByteSpan>
class ZVByteCursor
{
public:
    explicit ZVByteCursor(const ByteSource& source, int64_t position = 0) : m_source(source), m_position(position) {}

    int64_t GetPosition() const { return m_position; }
    // Moves anywhere, also to where nothing is.
    void SeekTo(int64_t position) { m_position = position; }
    // Moves on by a count of any sign, also to where nothing is. Moves that would leave 64 bits end past the end.
    void Skip(int64_t count)
    {
        if (__builtin_add_overflow(m_position, count, &m_position))
            m_position = PastEverything;
    }

    // Reads an integer of the type's own width.
    template <class Integer>
    Integer Read()
    {
        static_assert(std::is_integral_v<Integer>);
        return static_cast<Integer>(ReadUnsigned(static_cast<int32_t>(sizeof(Integer))));
    }

    // Reads an unsigned integer of 1 to 8 bytes.
    uint64_t ReadUnsigned(int32_t width)
    {
        const uint8_t* const bytes = m_source.Find(m_position, width);
        if (bytes == nullptr)
        {
            EndPolicy::OnPastEnd();
            return 0;
        }
        m_position += width;
        uint64_t value = 0;
        for (int32_t index = 0; index < width; ++index)
            value = value << 8 | bytes[Order == std::endian::big ? index : width - 1 - index];
        return value;
    }

    // Reads that many bytes as they stand. A negative count gives none and moves nothing.
    std::string_view ReadBytes(int64_t count)
    {
        if (count < 1)
            return {};
        const uint8_t* const bytes = m_source.Find(m_position, count);
        if (bytes == nullptr)
            EndPolicy::OnPastEnd();
        Skip(count);
        return bytes == nullptr ? std::string_view()
                                : std::string_view(reinterpret_cast<const char*>(bytes), static_cast<size_t>(count));
    }

private:
    static constexpr int64_t PastEverything = INT64_MAX;

    ByteSource m_source;
    int64_t m_position;
};
