#include "mp4/model/CFieldReader.h"

#include "mp4/model/CAtomTable.h"
#include "mp4/model/CContainerAtom.h"
#include "mp4/model/Exception.h"

#include <algorithm>

// A size that is smaller than its own header can be so far below zero that nothing more can be taken from it. It stays there, and
// the atom fails.
void CFieldReader::Take(int64_t count)
{
    if (__builtin_sub_overflow(m_remaining, count, &m_remaining))
        m_remaining = INT64_MIN;
}

void CFieldReader::Number(const char*, int32_t width, uint64_t& value)
{
    value = m_reader.ReadNumber(width);
    Take(width);
}

void CFieldReader::Zero(int32_t count)
{
    Take(count);
    for (; count > 0; --count)
        if (m_reader.ReadNumber(1) != 0)
            ThrowException(L"SkipZero error");
}

void CFieldReader::Bytes(const char*, int64_t count, CAtomBytes& bytes)
{
    bytes.Read(m_reader, count);
    Take(count);
}

void CFieldReader::Rest(const char* name, CAtomBytes& bytes)
{
    if (m_remaining > 0)
        Bytes(name, m_remaining, bytes);
}

void CFieldReader::Range(const char*, CAtomBytes& bytes, CRangeEnd end)
{
    // The place of a range counts also when nothing is in it.
    if (m_remaining < 0)
        return;
    bytes.ReadRange(m_reader, m_remaining, end);
    m_remaining = 0;
}

void CFieldReader::Text(const char*, CAtomBytes& bytes)
{
    std::vector<uint8_t> text;
    for (bool isEnd = false; !isEnd && m_remaining > 0; --m_remaining)
    {
        text.push_back(static_cast<uint8_t>(m_reader.ReadNumber(1)));
        isEnd = text.back() == 0;
    }
    bytes = CAtomBytes(text);
}

// A table that is longer than its atom makes the atom fail, however long it is, so it is not kept.
void CFieldReader::Table(const char*, uint32_t count, CAtomTable& table)
{
    const int64_t size = int64_t {count} * table.GetRowWidth();
    if (size > m_remaining)
        table.GetBytes().ReadRange(m_reader, size, CRangeEnd::MustBeThere);
    else
        table.GetBytes().ReadIntoMemory(m_reader, size);
    Take(size);
}

uint32_t CFieldReader::CountRows(const CAtomTable& table) const
{
    return static_cast<uint32_t>(std::clamp<int64_t>(m_remaining / table.GetRowWidth(), 0, UINT32_MAX));
}

bool CFieldReader::HasEntry(bool, int64_t bytes)
{
    return m_remaining >= bytes && ++m_reader.Limits.Entries <= CAtomLimits::MaximumEntries;
}

void CFieldReader::Children(CContainerAtom& atom, uint32_t required)
{
    atom.ReadChildren(m_reader, m_remaining, required);
}
