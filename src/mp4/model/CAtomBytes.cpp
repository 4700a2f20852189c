#include "mp4/model/CAtomBytes.h"

#include "mp4/model/CAtomReader.h"
#include "mp4/model/CAtomWriter.h"
#include "mp4/model/CFieldVisitor.h"
#include "mp4/model/Exception.h"

#include <algorithm>

void CAtomBytes::Read(CAtomReader& reader, int64_t count)
{
    if (count > MaximumInMemory)
        ReadRange(reader, count, CRangeEnd::MustBeThere);
    else
        ReadIntoMemory(reader, count);
}

void CAtomBytes::ReadIntoMemory(CAtomReader& reader, int64_t count)
{
    *this = CAtomBytes();
    if (count < 1)
        return;
    // Before memory is asked for.
    if (count > reader.GetAvailable())
        ThrowException(ReadPastEnd);
    m_bytes.resize(static_cast<size_t>(count));
    reader.ReadBytes(m_bytes.data(), count);
}

void CAtomBytes::ReadRange(CAtomReader& reader, int64_t count, CRangeEnd end)
{
    *this = CAtomBytes();
    if (count > reader.GetAvailable() && end == CRangeEnd::MustBeThere)
        ThrowException(ReadPastEnd);
    m_reader = &reader;
    m_start = reader.GetPosition();
    m_count = std::min(count, reader.GetAvailable());
    m_declaredCount = count;
    reader.Seek(m_start + m_count);
}

void CAtomBytes::Write(CAtomWriter& writer) const
{
    if (m_reader == nullptr)
    {
        writer.WriteBytes(m_bytes.data(), GetCount());
        return;
    }
    constexpr int64_t BlockSize = int64_t {1} << 20;
    std::vector<uint8_t> block(static_cast<size_t>(std::min(m_count, BlockSize)));
    m_reader->Seek(m_start);
    for (int64_t rest = m_count; rest > 0;)
    {
        const int64_t part = std::min(rest, BlockSize);
        m_reader->ReadBytes(block.data(), part);
        writer.WriteBytes(block.data(), part);
        rest -= part;
    }
}

std::vector<uint8_t> CAtomBytes::GetPart(int64_t start, int64_t count) const
{
    if (m_reader == nullptr)
        return {m_bytes.begin() + start, m_bytes.begin() + start + count};
    std::vector<uint8_t> part(static_cast<size_t>(count));
    m_reader->Seek(m_start + start);
    m_reader->ReadBytes(part.data(), count);
    return part;
}
