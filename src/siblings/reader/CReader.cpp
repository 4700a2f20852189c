#include "siblings/reader/CReader.h"

int64_t CReader::Seek(int64_t position)
{
    const int64_t size = GetSize();
    if (m_isOpen && position >= 0 && (size < 0 || position <= size))
        m_position = position;
    return m_position;
}

void CReader::GetInfo(const wchar_t*, IZVDllString& value)
{
    value.Empty();
}
