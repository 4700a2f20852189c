#include "mp4/samples/CChunkOffsetAtomBase.h"

#include "mp4/movie/CMDATAtom.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/samples/CMDATIndex.h"

#include <algorithm>
#include <optional>
#include <utility>

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
    const bool isKnown = movie != nullptr && movie->GetMDATIndex().IsOf(mdatList);
    const std::optional<CMDATIndex> own = isKnown ? std::nullopt : std::optional<CMDATIndex>(mdatList);
    const CMDATIndex& index = isKnown ? movie->GetMDATIndex() : *own;
    if (m_offsets.GetRowWidth() == ShortOffset)
        Match<uint32_t>(index);
    else
        Match<uint64_t>(index);
}

// Neighbours nearly always lie in the same mdat, so the last one is tried first. A long film has some hundred thousand chunks.
template <class Offset>
void CChunkOffsetAtomBase::Match(const CMDATIndex& index)
{
    uint64_t start = 0;
    uint64_t size = 0;
    const uint32_t count = GetChunkCount();
    uint32_t chunk = 0;
    for (;; ++chunk)
    {
        chunk = m_offsets.SkipWhile<Offset>(chunk, [start, size](Offset offset) { return offset - start < size; });
        const CMDATRange* const found = chunk < count ? index.Find(m_offsets.Get<Offset>(chunk)) : nullptr;
        if (found == nullptr)
            break;
        start = found->Start;
        size = found->End - found->Start;
        if (m_runs.empty() || m_runs.back().Atom != found->Atom)
            m_runs.push_back({chunk, found->Atom});
    }
    m_matchedCount = chunk;
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
    const bool becomesRelative = direction == Direction::ToRelative;
    if (std::exchange(m_isRelative, becomesRelative) == becomesRelative)
        return;
    for (size_t run = 0; run < m_runs.size(); ++run)
    {
        const uint64_t start = m_runs[run].Atom->GetDataStart();
        for (uint32_t chunk = m_runs[run].FirstChunk; chunk < GetEnd(run); ++chunk)
            SetOffset(chunk, becomesRelative ? GetOffset(chunk) - start : GetOffset(chunk) + start);
    }
}

void CChunkOffsetAtomBase::SetOffset(uint32_t chunk, uint64_t offset)
{
    if (m_offsets.GetRowWidth() == ShortOffset)
        m_offsets.Set(chunk, static_cast<uint32_t>(offset));
    else
        m_offsets.Set(chunk, offset);
}

void CChunkOffsetAtomBase::Append(CAtom& other)
{
    const auto& second = static_cast<const CChunkOffsetAtomBase&>(other);
    const uint32_t before = GetChunkCount();
    m_offsets.AddRows(second.m_offsets);
    for (const Run& run : second.m_runs)
        m_runs.push_back({before + run.FirstChunk, run.Atom});
    m_matchedCount = before + second.m_matchedCount;
}

void CChunkOffsetAtomBase::MoveInto(CMDATAtom& target, const std::unordered_map<const CMDATAtom*, uint64_t>& bytesBefore)
{
    for (size_t run = 0; run < m_runs.size(); ++run)
    {
        const uint64_t before = bytesBefore.at(m_runs[run].Atom);
        for (uint32_t chunk = m_runs[run].FirstChunk; chunk < GetEnd(run); ++chunk)
            SetOffset(chunk, GetOffset(chunk) + before);
        m_runs[run].Atom = &target;
    }
}

void CChunkOffsetAtomBase::TakeChunks(const CChunkOffsetAtomBase& other)
{
    m_offsets = CAtomTable(LongOffset);
    m_offsets.AddRows(other.GetChunkCount());
    for (uint32_t chunk = 0; chunk < other.GetChunkCount(); ++chunk)
        SetOffset(chunk, other.GetOffset(chunk));
    m_runs = other.m_runs;
    m_matchedCount = other.m_matchedCount;
}

std::unique_ptr<CCO64Atom> CCO64Atom::MakeFrom(const CChunkOffsetAtomBase& chunks)
{
    auto atom = std::make_unique<CCO64Atom>(Class, FourCC("co64"));
    atom->TakeChunks(chunks);
    return atom;
}
