#include "mp4/samples/CChunkOffsetAtomBase.h"

#include "mp4/movie/CMDATAtom.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/samples/CMDATIndex.h"

#include <algorithm>

void CChunkOffsetAtomBase::OffsetFields(CFieldVisitor& visitor, int32_t width)
{
    CFullAtom::Fields(visitor);
    m_offsets.SetRowWidth(width);
    uint32_t count = m_offsets.GetCount();
    visitor.Field("entry count", count);
    visitor.Table("offsets", count, m_offsets);
}

void CChunkOffsetAtomBase::Verify(const CMDATList& mdatList, bool)
{
    m_runs.clear();
    m_matchedCount = 0;
    const auto* const movie = static_cast<const CMOOVAtom*>(FindParent(FourCC("moov")));
    if (movie != nullptr && movie->GetMDATIndex().IsOf(mdatList))
        Match(movie->GetMDATIndex());
    else
        Match(CMDATIndex(mdatList));
}

// Neighbours nearly always lie in the same mdat, so the last one is tried first.
void CChunkOffsetAtomBase::Match(const CMDATIndex& index)
{
    CMDATRange range;
    const uint32_t count = GetChunkCount();
    for (; m_matchedCount < count; ++m_matchedCount)
    {
        const uint64_t offset = GetOffset(m_matchedCount);
        if (range.Contains(offset))
            continue;
        const CMDATRange* const found = index.Find(offset);
        if (found == nullptr)
            return;
        range = *found;
        if (m_runs.empty() || m_runs.back().Atom != range.Atom)
            m_runs.push_back({m_matchedCount, range.Atom});
    }
}

CMDATAtom* CChunkOffsetAtomBase::GetMdat(uint32_t chunk) const
{
    if (chunk >= m_matchedCount)
        return nullptr;
    return std::prev(std::ranges::upper_bound(m_runs, chunk, {}, &Run::FirstChunk))->Atom;
}

void CChunkOffsetAtomBase::ConvertToRelative()
{
    Convert(Direction::ToRelative);
}

void CChunkOffsetAtomBase::ConvertToAbsolute()
{
    Convert(Direction::ToAbsolute);
}

void CChunkOffsetAtomBase::Convert(Direction direction)
{
    for (size_t run = 0; run < m_runs.size(); ++run)
    {
        const uint64_t start = m_runs[run].Atom->GetDataStart();
        const uint32_t end = run + 1 < m_runs.size() ? m_runs[run + 1].FirstChunk : m_matchedCount;
        for (uint32_t chunk = m_runs[run].FirstChunk; chunk < end; ++chunk)
        {
            const uint64_t offset = direction == Direction::ToRelative ? GetOffset(chunk) - start : GetOffset(chunk) + start;
            if (m_offsets.GetRowWidth() == ShortOffset)
                m_offsets.Set(chunk, static_cast<uint32_t>(offset));
            else
                m_offsets.Set(chunk, offset);
        }
    }
}
