#include "mp4/model/CAtomWriter.h"

#include "mp4/model/Exception.h"

#include <cstring>

void CAtomWriter::WriteNumber(uint64_t value, int32_t width)
{
    uint8_t bytes[sizeof value];
    for (int32_t index = 0; index < width; ++index)
        bytes[index] = static_cast<uint8_t>(value >> 8 * (width - 1 - index));
    WriteBytes(bytes, width);
}

void CAtomWriter::WriteBytes(const void* bytes, int64_t count)
{
    if (count < 1)
        return;
    m_count += count;
    if (count > BufferSize - m_used)
        Flush();
    if (count > BufferSize)
    {
        Hand(bytes, count);
        return;
    }
    memcpy(m_buffer + m_used, bytes, static_cast<size_t>(count));
    m_used += static_cast<int32_t>(count);
}

void CAtomWriter::Flush()
{
    Hand(m_buffer, m_used);
    m_used = 0;
}

void CAtomWriter::Hand(const void* bytes, int64_t count)
{
    if (count > 0 && !m_sink.Write(bytes, count))
        ThrowException(L"The file cannot be written");
}
