#include "caller/plan/CShardFilms.h"

#include <stdexcept>

CShardFilms::CShardFilms(const CPlan& plan, int64_t shard) : m_shard(shard), m_path(plan.GetShardFile(shard)), m_file(m_path)
{
    for (std::string line; m_file.GetNext(line);)
        m_starts.push_back(m_file.GetStart());
    if (GetCount() != plan.GetCount(shard))
        FailAsDamaged("it has " + std::to_string(GetCount()) + " films instead of " + std::to_string(plan.GetCount(shard)));
}

CPlannedFilm CShardFilms::Get(int64_t number)
{
    m_file.GoTo(m_starts[static_cast<size_t>(number)]);
    std::string line;
    m_file.GetNext(line);
    std::optional<CPlannedFilm> film = ReadPlannedFilm(line);
    if (!film || film->Tasks.IsEmpty())
        FailAsDamaged("its line " + std::to_string(number + 1) + " is no film");
    return std::move(*film);
}

void CShardFilms::FailAsDamaged(const std::string& what) const
{
    throw std::runtime_error("the file " + m_path.string() + " is damaged: " + what);
}
