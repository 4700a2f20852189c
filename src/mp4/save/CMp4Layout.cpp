#include "mp4/save/CMp4Layout.h"

#include <algorithm>

namespace
{
void ConvertToRelative(const ZVOwnedPtrArray<CAtom>& roots)
{
    for (CAtom* const root : roots)
        root->ConvertToRelative();
}

void ConvertToAbsolute(const ZVOwnedPtrArray<CAtom>& roots)
{
    for (CAtom* const root : roots)
        root->ConvertToAbsolute();
}
}

CMp4Layout::CMp4Layout(const ZVOwnedPtrArray<CAtom>& roots)
{
    uint64_t position = 0;
    for (CAtom* const root : roots)
    {
        root->ComputeSize();
        if (auto* const mdat = dynamic_cast<CMDATAtom*>(root))
            m_starts.emplace(mdat, position + static_cast<uint64_t>(root->GetWrittenHeaderSize()));
        position += root->GetSize();
    }
    m_fileSize = static_cast<int64_t>(position);
}

uint64_t CMp4Layout::GetDataStart(const CMDATAtom& mdat) const
{
    const auto found = m_starts.find(const_cast<CMDATAtom*>(&mdat));
    return found == m_starts.end() ? mdat.GetDataStart() : found->second;
}

bool CMp4Layout::MovesData() const
{
    return std::ranges::any_of(m_starts, [](const auto& start) { return start.first->GetDataStart() != start.second; });
}

CMovedOffsets::CMovedOffsets(const ZVOwnedPtrArray<CAtom>& roots, const CMp4Layout& layout) : m_roots(roots), m_layout(layout)
{
    try
    {
        ConvertToRelative(m_roots);
        m_isMoved = true;
        for (const auto& [mdat, start] : m_layout.m_starts)
            mdat->SetWrittenStart(start);
        ConvertToAbsolute(m_roots);
    }
    catch (...)
    {
        MoveBack();
        throw;
    }
}

CMovedOffsets::~CMovedOffsets()
{
    MoveBack();
}

// Those that count as they should already are left alone by each of the steps.
void CMovedOffsets::MoveBack()
{
    if (m_isMoved)
        ConvertToRelative(m_roots);
    for (const auto& [mdat, start] : m_layout.m_starts)
        mdat->ForgetWrittenStart();
    ConvertToAbsolute(m_roots);
}
