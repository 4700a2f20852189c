#include "mp4/samples/CMDATIndex.h"

#include "mp4/movie/CMDATAtom.h"

#include <algorithm>
#include <queue>

// Walks through the starts in ascending order. Of the atoms that have begun and not ended, the one that stands first in the list
// has the bytes up to its end or to the next start.
CMDATIndex::CMDATIndex(const CMDATList& list) : m_list(&list)
{
    const auto standsLater = [](const Candidate& left, const Candidate& right) { return left.Place > right.Place; };
    std::priority_queue<Candidate, std::vector<Candidate>, decltype(standsLater)> open(standsLater);
    const std::vector<Candidate> candidates = FindCandidates(list);
    uint64_t position = 0;
    for (auto next = candidates.begin(); next != candidates.end() || !open.empty();)
    {
        if (open.empty())
            position = next->Range.Start;
        for (; next != candidates.end() && next->Range.Start == position; ++next)
            open.push(*next);
        while (!open.empty() && open.top().Range.End <= position)
            open.pop();
        if (open.empty())
            continue;
        CMDATRange range = open.top().Range;
        range.Start = position;
        if (next != candidates.end())
            range.End = std::min(range.End, next->Range.Start);
        Add(range);
        position = range.End;
    }
}

// By their starts; atoms without data hold nothing.
std::vector<CMDATIndex::Candidate> CMDATIndex::FindCandidates(const CMDATList& list)
{
    std::vector<Candidate> candidates;
    int32_t place = 0;
    for (CMDATAtom* const atom : list)
    {
        if (atom->GetDataSize() > 0)
            candidates.push_back({
                {atom->GetDataStart(), atom->GetDataStart() + atom->GetDataSize(), atom},
                place
            });
        ++place;
    }
    std::ranges::sort(candidates, {}, [](const Candidate& candidate) { return candidate.Range.Start; });
    return candidates;
}

void CMDATIndex::Add(const CMDATRange& range)
{
    if (!m_ranges.empty() && m_ranges.back().Atom == range.Atom && m_ranges.back().End == range.Start)
        m_ranges.back().End = range.End;
    else
        m_ranges.push_back(range);
}

const CMDATRange* CMDATIndex::Find(uint64_t offset) const
{
    if (m_finds >= MaximumFinds)
        return nullptr;
    ++m_finds;
    auto after = std::ranges::upper_bound(m_ranges, offset, {}, &CMDATRange::Start);
    if (after == m_ranges.begin() || !(--after)->Contains(offset))
        return nullptr;
    return &*after;
}
