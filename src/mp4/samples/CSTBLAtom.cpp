#include "mp4/samples/CSTBLAtom.h"

#include "mp4/model/Exception.h"

#include <algorithm>

namespace
{
// That many numbers of samples are written down where none were before. A week of film has some thirty million, and a table without
// sizes can tell of billions.
constexpr uint32_t MaximumSamplesListed = 50'000'000;
}

void CSTBLAtom::Verify(const CMDATList& mdatList, bool checkOverlap)
{
    m_descriptions = static_cast<CSTSDAtom*>(&GetRequiredChild(FourCC("stsd")));
    m_descriptions->Verify(mdatList, checkOverlap);
    m_times = static_cast<CSTTSAtom*>(&GetRequiredChild(FourCC("stts")));
    m_chunks = static_cast<CSTSCAtom*>(&GetRequiredChild(FourCC("stsc")));
    m_chunks->Verify(mdatList, checkOverlap);
    m_sizes = static_cast<CSTSZAtom*>(&GetRequiredChild(FourCC("stsz")));
    m_chunkOffsets = &FindChunkOffsets();
    m_chunkOffsets->Verify(mdatList, checkOverlap);
    m_lastSample = {};
    const uint64_t described = m_chunks->CountSamples(m_chunkOffsets->GetChunkCount());
    m_sampleCount = static_cast<uint32_t>(std::min<uint64_t>(m_sizes->GetSampleCount(), described));
    m_syncSamples = GetMediaType() == 'v' ? static_cast<CSTSSAtom*>(GetFirstChild(FourCC("stss"))) : nullptr;
    if (m_syncSamples != nullptr)
        m_syncSamples->Verify(mdatList, checkOverlap);
}

// There is one table, of either kind.
CChunkOffsetAtomBase& CSTBLAtom::FindChunkOffsets() const
{
    constexpr uint32_t Short = FourCC("stco");
    constexpr uint32_t Long = FourCC("co64");
    CAtom* found = nullptr;
    for (CAtom* const child : GetChildren())
    {
        if (child->GetType() != Short && child->GetType() != Long)
            continue;
        if (found != nullptr)
        {
            found = nullptr;
            break;
        }
        found = child;
    }
    if (found == nullptr)
        ThrowException(L"%s atom has wrong number of %s or %s atoms", GetTypeName(), GetTypeText(Short), GetTypeText(Long));
    return static_cast<CChunkOffsetAtomBase&>(*found);
}

CSamplePlace CSTBLAtom::FindSample(uint32_t sample) const
{
    if (m_chunkOffsets == nullptr || sample >= m_sampleCount)
        return {};
    const CSampleChunk chunk = m_chunks->FindChunk(sample);
    if (!chunk.IsFound || chunk.Chunk >= m_chunkOffsets->GetChunkCount())
        return {};
    if (m_lastSample.Chunk != static_cast<int64_t>(chunk.Chunk) || m_lastSample.Sample > sample)
        m_lastSample = {static_cast<int64_t>(chunk.Chunk), static_cast<uint32_t>(chunk.FirstSample),
                        m_chunkOffsets->GetOffset(static_cast<uint32_t>(chunk.Chunk))};
    m_lastSample.Offset += m_sizes->SumSampleSizes(m_lastSample.Sample, sample);
    m_lastSample.Sample = sample;
    return {true, m_lastSample.Offset, static_cast<uint64_t>(m_sizes->GetSampleSize(sample))};
}

void CSTBLAtom::WidenChunkOffsets()
{
    if (m_chunkOffsets == nullptr || m_chunkOffsets->GetType() == FourCC("co64"))
        return;
    std::unique_ptr<CCO64Atom> wide = CCO64Atom::MakeFrom(*m_chunkOffsets);
    CCO64Atom* const table = wide.get();
    ReplaceChild(*m_chunkOffsets, std::move(wide));
    m_chunkOffsets = table;
}

bool CSTBLAtom::DoTablesAgree() const
{
    const uint32_t samples = m_sizes->GetSampleCount();
    const uint32_t chunks = m_chunkOffsets->GetChunkCount();
    const CSTSSAtom* const sync = FindSyncSamples();
    return m_times->CountSamples() == samples && m_chunks->CountSamples(chunks) == samples && m_chunks->IsInOrder(chunks) &&
           (sync == nullptr || sync->IsInOrder(samples));
}

void CSTBLAtom::Append(CAtom& other)
{
    auto& second = static_cast<CSTBLAtom&>(other);
    if (m_chunkOffsets == nullptr || second.m_chunkOffsets == nullptr)
        ThrowException(L"The tables of a track are not verified");
    const uint32_t samples = m_sizes->GetSampleCount();
    const uint32_t chunks = m_chunkOffsets->GetChunkCount();
    m_chunks->EndAt(chunks);
    second.m_chunks->EndAt(second.m_chunkOffsets->GetChunkCount());
    const bool doAgree = DoTablesAgree() && second.DoTablesAgree();
    if (FindSyncSamples() == nullptr && second.FindSyncSamples() != nullptr)
        ListSyncSamples();
    if (FindSyncSamples() != nullptr && second.FindSyncSamples() == nullptr)
        second.ListSyncSamples();
    if (CSTSSAtom* const sync = second.FindSyncSamples())
        sync->MoveBehind(samples);
    second.m_chunks->MoveBehind(chunks);
    CContainerAtom::Append(other);
    if (!doAgree)
        ThrowException(L"The tables of a track are not about the same samples");
}

// Without a list all samples are such.
void CSTBLAtom::ListSyncSamples()
{
    if (m_sizes->GetSampleCount() > MaximumSamplesListed)
        ThrowException(L"STSS: A track has too many samples");
    auto sync = std::make_unique<CSTSSAtom>(CSTSSAtom::Class, FourCC("stss"));
    sync->AddAll(m_sizes->GetSampleCount());
    AddChild(std::move(sync));
}
