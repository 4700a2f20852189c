#include "mp4/model/CAtomTable.h"

#include "mp4/model/Exception.h"

void CAtomTable::AddRows(uint32_t count)
{
    const uint64_t sum = uint64_t {GetCount()} + count;
    if (sum > UINT32_MAX)
        ThrowException(L"A table would have %I64u rows, more than there is room for", sum);
    m_bytes.Resize(static_cast<int64_t>(sum) * m_rowWidth);
}

void CAtomTable::AddRows(const CAtomTable& other)
{
    const uint32_t before = GetCount();
    AddRows(other.GetCount());
    if (other.GetCount() > 0)
        memcpy(m_bytes.GetData() + size_t {before} * static_cast<size_t>(m_rowWidth), other.m_bytes.View().data(),
               static_cast<size_t>(other.m_bytes.GetCount()));
}

void CAtomTable::Truncate(uint32_t count)
{
    if (count < GetCount())
        m_bytes.Resize(int64_t {count} * m_rowWidth);
}
