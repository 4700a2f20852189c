#include "mp4/model/CAtomReader.h"

#include "mp4/model/Exception.h"

#include <algorithm>

void CAtomReader::ThrowPastEnd::OnPastEnd()
{
    ThrowException(ReadPastEnd);
}

// A stream may give less at once than it has, so it is asked until it gives nothing.
int64_t CAtomReader::Block::Read(int64_t position, void* bytes, int64_t count)
{
    if (Stream == nullptr || position < 0 || Stream->Seek(position) != position)
        return 0;
    int64_t used = 0;
    for (int64_t part = 1; part > 0 && used < count; used += std::max<int64_t>(part, 0))
        part = Stream->Read(static_cast<uint8_t*>(bytes) + used, count - used);
    return used;
}

const uint8_t* CAtomReader::Block::Find(int64_t position, int64_t count)
{
    const int64_t offset = position - m_position;
    const auto size = static_cast<int64_t>(m_bytes.size());
    if (offset >= 0 && offset <= size && count <= size - offset)
        return m_bytes.data() + offset;
    m_bytes.clear();
    m_bytes.resize(static_cast<size_t>(Size));
    m_bytes.resize(static_cast<size_t>(Read(position, m_bytes.data(), Size)));
    m_position = position;
    return count <= static_cast<int64_t>(m_bytes.size()) ? m_bytes.data() : nullptr;
}

void CAtomReader::Attach(CGeneralReader* stream)
{
    m_block.Stream = stream;
    m_block.Drop();
    m_cursor.SeekTo(0);
    m_length = stream == nullptr ? 0 : std::max<int64_t>(stream->GetLength(), 0);
    Limits = CAtomLimits();
}

void CAtomReader::Seek(int64_t position)
{
    if (position >= 0 && position <= m_length)
        m_cursor.SeekTo(position);
}

void CAtomReader::ReadBytes(void* bytes, int64_t count)
{
    if (count < 1)
        return;
    if (count > GetAvailable())
        ThrowPastEnd::OnPastEnd();
    const int64_t position = GetPosition();
    if (const uint8_t* const found = m_block.FindFew(position, count))
        std::copy_n(found, count, static_cast<uint8_t*>(bytes));
    else if (m_block.Read(position, bytes, count) != count)
        ThrowPastEnd::OnPastEnd();
    m_cursor.SeekTo(position + count);
}
