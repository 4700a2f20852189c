#include "mp4/model/CAtomReader.h"

#include "mp4/model/Exception.h"

#include <algorithm>

void CAtomReader::ThrowPastEnd::OnPastEnd()
{
    ThrowException(ReadPastEnd);
}

const uint8_t* CAtomReader::Block::Find(int64_t position, int64_t count)
{
    const int64_t offset = position - m_position;
    const auto size = static_cast<int64_t>(m_bytes.size());
    if (offset >= 0 && offset <= size && count <= size - offset)
        return m_bytes.data() + offset;
    m_bytes.clear();
    if (Stream == nullptr || position < 0 || Stream->Seek(position) != position)
        return nullptr;
    m_bytes.resize(static_cast<size_t>(Size));
    m_bytes.resize(static_cast<size_t>(std::max<int64_t>(Stream->Read(m_bytes.data(), Size), 0)));
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
    if (count > GetAvailable() || m_block.Stream == nullptr)
        ThrowPastEnd::OnPastEnd();
    const int64_t position = GetPosition();
    if (const uint8_t* const found = m_block.FindFew(position, count))
        std::copy_n(found, count, static_cast<uint8_t*>(bytes));
    else if (m_block.Stream->Seek(position) != position || m_block.Stream->Read(bytes, count) != count)
        ThrowPastEnd::OnPastEnd();
    m_cursor.SeekTo(position + count);
}
