#include "mp4/movie/CMDATAtom.h"

#include <algorithm>

uint64_t CMDATAtom::GetDataSize() const
{
    auto size = static_cast<uint64_t>(m_data.GetDeclaredCount());
    for (const CAtomBytes& data : m_appended)
        size += static_cast<uint64_t>(data.GetDeclaredCount());
    return size;
}

int64_t CMDATAtom::GetPresentSize() const
{
    int64_t size = m_data.GetCount();
    for (const CAtomBytes& data : m_appended)
        size += data.GetCount();
    return size;
}

void CMDATAtom::Append(CAtom& other)
{
    const auto& second = static_cast<const CMDATAtom&>(other);
    m_appended.push_back(second.m_data);
    m_appended.insert(m_appended.end(), second.m_appended.begin(), second.m_appended.end());
}

std::vector<uint8_t> CMDATAtom::GetPart(int64_t start, int64_t count) const
{
    std::vector<uint8_t> part;
    const auto take = [&](const CAtomBytes& data)
    {
        const int64_t inside = std::clamp<int64_t>(data.GetCount() - start, 0, count);
        if (inside > 0)
        {
            const std::vector<uint8_t> bytes = data.GetPart(start, inside);
            part.insert(part.end(), bytes.begin(), bytes.end());
        }
        start = std::max<int64_t>(start - data.GetCount(), 0);
        count -= inside;
    };
    take(m_data);
    std::ranges::for_each(m_appended, take);
    return part;
}
