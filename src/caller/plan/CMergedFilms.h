#pragma once

#include "caller/catalog/CCatalog.h"
#include "caller/plan/CPlan.h"

#include <optional>
#include <vector>

// What a catalog remembers of plans: which films of which shards it has taken, so that it takes none twice. It is a table of its own, which
// comes with the first plan.
class CMergedFilms
{
public:
    // The catalog must outlive this.
    CMergedFilms(const CCatalog& catalog, const CPlan& plan);

    // The films of a shard that were taken, by their numbers.
    std::vector<bool> Get(int64_t shard);
    // Remembers them. After changes of the catalog it is a part of the same transaction.
    void Set(int64_t shard, const std::vector<bool>& films);

private:
    const CPlan& m_plan;
    std::optional<CStatement> m_get;
    std::optional<CStatement> m_set;
};
