#include "siblings/reader/CMemoryReader.h"

#include <algorithm>
#include <cstring>

bool CMemoryReader::Open()
{
    m_position = 0;
    m_isOpen = !IsCancelled();
    m_hasFailed = !m_isOpen;
    return m_isOpen;
}

int64_t CMemoryReader::Read(void* bytes, int64_t count)
{
    m_hasFailed = !m_isOpen || IsCancelled();
    const int64_t read = m_hasFailed ? 0 : std::min(count, m_count - m_position);
    if (read <= 0)
        return 0;
    memcpy(bytes, m_bytes + m_position, static_cast<size_t>(read));
    m_position += read;
    return read;
}
