#include "mp4/movie/CMDATAtom.h"

uint64_t CMDATAtom::GetDataSize() const
{
    uint64_t size = GetOwnDataSize();
    for (const CAtomBytes& data : m_appended)
        size += static_cast<uint64_t>(data.GetDeclaredCount());
    return size;
}

void CMDATAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CMDATAtom&>(other);
    std::vector<CAtomBytes> all = m_appended;
    all.push_back(second.m_data);
    all.insert(all.end(), second.m_appended.begin(), second.m_appended.end());
    m_appended.swap(all);
}
