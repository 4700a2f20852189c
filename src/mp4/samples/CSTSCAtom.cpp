#include "mp4/samples/CSTSCAtom.h"

#include <algorithm>

void CSTSCAtom::Verify(const CMDATList&, bool)
{
    GetParent(FourCC("stbl"));
    FindRuns();
}

// From the end, since a later entry limits those before it.
void CSTSCAtom::FindRuns()
{
    m_runs.clear();
    m_lastRun = 0;
    m_samplesBeforeLastRun = 0;
    for (uint32_t entry = GetEntryCount(); entry > 0; --entry)
    {
        const auto numberOfFirst = m_entries.Get<uint32_t>(entry - 1);
        const uint32_t firstChunk = numberOfFirst == 0 ? 0 : numberOfFirst - 1;
        if (m_runs.empty() || firstChunk < m_runs.back().FirstChunk)
            m_runs.push_back({firstChunk, m_entries.Get<uint32_t>(entry - 1, 4)});
    }
    std::ranges::reverse(m_runs);
}

// No sum can leave 64 bits: all runs together have no more chunks than 32 bits count, and none has more samples than that.
uint64_t CSTSCAtom::CountSamples(uint32_t chunkCount) const
{
    uint64_t count = 0;
    for (size_t run = 0; run < m_runs.size() && m_runs[run].FirstChunk < chunkCount; ++run)
    {
        const uint32_t end = run + 1 < m_runs.size() ? std::min(m_runs[run + 1].FirstChunk, chunkCount) : chunkCount;
        count += uint64_t {end - m_runs[run].FirstChunk} * m_runs[run].SamplesPerChunk;
    }
    return count;
}

CSampleChunk CSTSCAtom::FindChunk(uint32_t sample) const
{
    if (sample < m_samplesBeforeLastRun)
    {
        m_lastRun = 0;
        m_samplesBeforeLastRun = 0;
    }
    for (; m_lastRun + 1 < m_runs.size(); ++m_lastRun)
    {
        const Run& run = m_runs[m_lastRun];
        const uint64_t samples = uint64_t {m_runs[m_lastRun + 1].FirstChunk - run.FirstChunk} * run.SamplesPerChunk;
        if (sample - m_samplesBeforeLastRun < samples)
            break;
        m_samplesBeforeLastRun += samples;
    }
    if (m_runs.empty() || m_runs[m_lastRun].SamplesPerChunk == 0)
        return {};
    const Run& run = m_runs[m_lastRun];
    const uint64_t firstChunk = GetEntryCount() == 1 ? 0 : run.FirstChunk;
    const uint64_t chunksOfRun = (sample - m_samplesBeforeLastRun) / run.SamplesPerChunk;
    return {true, firstChunk + chunksOfRun, m_samplesBeforeLastRun + chunksOfRun * run.SamplesPerChunk};
}

void CSTSCAtom::EndAt(uint32_t chunkCount)
{
    uint32_t end = GetEntryCount();
    while (end > 0 && m_entries.Get<uint32_t>(end - 1) > chunkCount)
        --end;
    m_entries.Truncate(end);
}

void CSTSCAtom::MoveBehind(uint32_t chunkCount)
{
    for (uint32_t entry = 0; entry < GetEntryCount(); ++entry)
        m_entries.Set(entry, m_entries.Get<uint32_t>(entry) + chunkCount);
}

bool CSTSCAtom::IsInOrder(uint32_t chunkCount) const
{
    uint32_t last = 0;
    for (uint32_t entry = 0; entry < GetEntryCount(); ++entry)
    {
        const auto first = m_entries.Get<uint32_t>(entry);
        if (first <= last || (last == 0 && first != 1))
            return false;
        last = first;
    }
    return last != 0 || chunkCount == 0;
}
