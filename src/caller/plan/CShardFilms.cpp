#include "caller/plan/CShardFilms.h"

#include <stdexcept>

CShardFilms::CShardFilms(const CPlan& plan, int64_t shard) : m_shard(shard), m_file(plan.GetShardFile(shard))
{
    for (std::string line; m_file.GetNext(line);)
        m_starts.push_back(m_file.GetStart());
    if (GetCount() != plan.GetCount(shard))
        throw std::runtime_error("the file " + plan.GetShardFile(shard).string() + " is damaged: it has " +
                                 std::to_string(GetCount()) + " films instead of " + std::to_string(plan.GetCount(shard)));
}

std::optional<CPlannedFilm> CShardFilms::Get(int64_t number)
{
    m_file.GoTo(m_starts[static_cast<size_t>(number)]);
    std::string line;
    m_file.GetNext(line);
    return ReadPlannedFilm(line);
}
