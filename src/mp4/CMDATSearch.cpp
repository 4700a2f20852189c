#include "mp4/CMDATSearch.h"

#include <algorithm>
#include <string_view>

namespace
{
constexpr std::string_view Type = "mdat";
constexpr int64_t SizeFieldSize = 4;
}

std::optional<int64_t> CMDATSearch::FindNextMDAT(int64_t from)
{
    constexpr auto TypeSize = static_cast<int64_t>(Type.size());
    if (from < 0 || from >= m_length - TypeSize)
        return {};
    for (int64_t position = from; position <= m_length - TypeSize;)
    {
        const int64_t blockEnd = m_blockPosition + static_cast<int64_t>(m_block.size());
        if ((position < m_blockPosition || position + TypeSize > blockEnd) && !Load(position))
            return {};
        const std::string_view block(m_block.data(), m_block.size());
        const size_t found = block.find(Type, static_cast<size_t>(position - m_blockPosition));
        if (found != std::string_view::npos)
        {
            const int64_t candidate = m_blockPosition + static_cast<int64_t>(found) - SizeFieldSize;
            return candidate < 1 ? std::nullopt : std::optional(candidate);
        }
        // A type may lie across the ends of two blocks.
        position = m_blockPosition + static_cast<int64_t>(m_block.size()) - TypeSize + 1;
    }
    return {};
}

// False when not even a type can be read there.
bool CMDATSearch::Load(int64_t position)
{
    m_block.resize(static_cast<size_t>(std::min(BlockSize, m_length - position)));
    m_blockPosition = position;
    m_block.resize(static_cast<size_t>(m_file.ReadAt(position, m_block.data(), static_cast<int64_t>(m_block.size()))));
    return m_block.size() >= Type.size();
}
