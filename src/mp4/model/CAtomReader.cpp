#include "mp4/model/CAtomReader.h"

#include "mp4/model/Exception.h"

#include <algorithm>

void CAtomReader::ThrowPastEnd::OnPastEnd()
{
    ThrowException(ReadPastEnd);
}

const uint8_t* CAtomReader::Block::Find(int64_t position, int64_t count)
{
    const std::span<const uint8_t> present = FindPresent(position);
    if (count <= static_cast<int64_t>(present.size()))
        return present.data();
    if (m_bytes == nullptr)
        m_bytes = std::make_unique_for_overwrite<uint8_t[]>(static_cast<size_t>(Size));
    m_used = Stream == nullptr ? 0 : Stream->ReadAt(position, m_bytes.get(), Size);
    m_position = position;
    return count <= m_used ? m_bytes.get() : nullptr;
}

std::span<const uint8_t> CAtomReader::Block::FindPresent(int64_t position) const
{
    if (position < m_position || position - m_position >= m_used)
        return {};
    const int64_t offset = position - m_position;
    return {m_bytes.get() + offset, static_cast<size_t>(m_used - offset)};
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
    auto* const target = static_cast<uint8_t*>(bytes);
    const std::span<const uint8_t> present = m_block.FindPresent(position);
    const int64_t used = std::min(count, static_cast<int64_t>(present.size()));
    std::copy_n(present.data(), used, target);
    if (used < count && m_block.Stream->ReadAt(position + used, target + used, count - used) != count - used)
        ThrowPastEnd::OnPastEnd();
    m_cursor.SeekTo(position + count);
}
