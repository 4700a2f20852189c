#pragma once

#include "caller/plan/CMergedFilms.h"
#include "caller/plan/CShardFilms.h"

#include <vector>

// A shard of which not all results are there.
struct CMissingShard
{
    int64_t Shard = 0;
    int64_t Films = 0;  // that have no result
    int64_t All = 0;    // that it has
};

// What came of a merge, in films.
struct CMergeCounts
{
    int64_t Taken = 0;  // into the catalog, failed ones too
    int64_t Failed = 0;
    int64_t Gone = 0;    // that were not there any more
    int64_t Newer = 0;   // that the catalog has learnt about after the plan was made, so it keeps what it has
    int64_t Before = 0;  // that were taken by earlier merges
    std::vector<CMissingShard> Missing = {};
};

// Brings the results of a plan into a catalog, each once, as far as they are there. It can end at any moment, and the next merge goes on
// there.
class CPlanMerge
{
public:
    CPlanMerge(const CPlan& plan, CCatalog& catalog);

    // Goes through the shards until all is done or the user interrupts it. Throws std::runtime_error if the catalog cannot be written.
    CMergeCounts Run();

private:
    void MergeShard(int64_t shard);
    int64_t ReadShard(int64_t shard, std::vector<bool>& taken);
    void Take(const CFilmResult& result, const CPlannedFilm& film);
    bool IsKnownBetter(const CPlannedFilm& film);
    void Keep(int64_t shard, const std::vector<bool>& taken);

    const CPlan& m_plan;
    CCatalog& m_catalog;
    CMergedFilms m_merged;
    CStatement m_scanned;
    CMergeCounts m_counts;
};

// The identity under which the result of a film belongs into a catalog: that of the plan, by whose inode the machine that made it knows
// the file, or one that no file has when the file was another one at work, so that the next scan looks at it again. Machines may see
// the time of one file with a different precision.
CFileIdentity GetCatalogIdentity(const CFileIdentity& planned, const CFileIdentity& seen);
