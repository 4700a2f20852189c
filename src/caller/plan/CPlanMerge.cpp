#include "caller/plan/CPlanMerge.h"

#include "caller/output/Messages.h"
#include "caller/plan/ShardResults.h"
#include "caller/process/CSignals.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace
{
// A commit waits for the disk, and what a kill can cost is read again.
constexpr int64_t TakenAtOnce = 1000;

// In nanoseconds, what network file systems and those of other systems keep of a time.
constexpr int64_t Precisions[] = {1, 100, 1'000, 1'000'000, 1'000'000'000, 2'000'000'000};

// Whether one is the other with some digits cut off.
bool IsSameTime(int64_t first, int64_t second)
{
    return std::ranges::any_of(Precisions, [&](int64_t precision)
                               { return first == second - second % precision || second == first - first % precision; });
}
}

CFileIdentity GetCatalogIdentity(const CFileIdentity& planned, const CFileIdentity& seen)
{
    if (planned.Size == seen.Size && IsSameTime(planned.ModificationTime, seen.ModificationTime))
        return planned;
    return {seen.Size, seen.ModificationTime, 0};
}

CPlanMerge::CPlanMerge(const CPlan& plan, CCatalog& catalog)
    : m_plan(plan),
      m_catalog(catalog),
      m_merged(catalog, plan),
      m_scanned(catalog.GetDatabase(), "SELECT scanned FROM films WHERE path = ?")
{
}

CMergeCounts CPlanMerge::Run()
{
    for (int64_t shard = 1; shard <= m_plan.GetFacts().Shards && !CSignals::IsInterrupted(); ++shard)
        MergeShard(shard);
    return m_counts;
}

void CPlanMerge::MergeShard(int64_t shard)
{
    std::vector<bool> taken = m_merged.Get(shard);
    const std::vector<bool> before = taken;
    m_counts.Before += std::ranges::count(before, true);
    if (std::ranges::find(taken, false) == taken.end())
        return;
    const int64_t missing = ReadShard(shard, taken);
    if (taken != before)
        Keep(shard, taken);
    if (missing == 0)
        return;
    m_counts.Missing.push_back({shard, missing, m_plan.GetCount(shard)});
    if (IsFinished(m_plan, shard) && !Reopen(m_plan, shard))
        SayFailure(m_plan.GetFinishedFile(shard), "the results are damaged; without this file the shard can be worked on again");
}

// Returns how many films have no result.
int64_t CPlanMerge::ReadShard(int64_t shard, std::vector<bool>& taken)
{
    const auto onResult = [&](const CFilmResult& result, const CPlannedFilm& film)
    {
        std::vector<bool>::reference isTaken = taken[static_cast<size_t>(result.Number)];
        if (isTaken || CSignals::IsInterrupted())
            return;
        Take(result, film);
        isTaken = true;
        if ((m_counts.Taken + m_counts.Gone + m_counts.Newer) % TakenAtOnce == 0)
            Keep(shard, taken);
    };
    std::optional<CShardFilms> films;
    try
    {
        films.emplace(m_plan, shard);
    }
    catch (const std::runtime_error& error)
    {
        // The other shards may be whole.
        SayError(error.what());
        return std::ranges::count(taken, false);
    }
    // An interrupted merge has not taken all that is there.
    const std::vector<bool> has = ReadResults(m_plan, *films, onResult);
    int64_t missing = 0;
    for (size_t number = 0; number < has.size(); ++number)
        missing += has[number] || taken[number] ? 0 : 1;
    return missing;
}

void CPlanMerge::Take(const CFilmResult& result, const CPlannedFilm& film)
{
    if (result.IsGone)
    {
        ++m_counts.Gone;
        return;
    }
    if (IsKnownBetter(film))
    {
        ++m_counts.Newer;
        return;
    }
    m_catalog.Store(result.Findings, GetCatalogIdentity(film.Identity, result.Identity));
    ++m_counts.Taken;
    m_counts.Failed += result.Findings.Errors.empty() ? 0 : 1;
}

// A scan may have looked at a changed film since the plan was made.
bool CPlanMerge::IsKnownBetter(const CPlannedFilm& film)
{
    const std::optional<CCatalogRow> row = m_catalog.Find(film.Path);
    if (!row || row->Identity == film.Identity)
        return false;
    m_scanned.BindBytes(1, film.Path);
    const bool isBetter = m_scanned.Step() && m_scanned.GetNumber(0) > m_plan.GetFacts().Created;
    m_scanned.Step();
    return isBetter;
}

void CPlanMerge::Keep(int64_t shard, const std::vector<bool>& taken)
{
    m_merged.Set(shard, taken);
    m_catalog.Commit();
}
