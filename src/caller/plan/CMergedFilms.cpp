#include "caller/plan/CMergedFilms.h"

namespace
{
// A bit for each film, the first in the lowest bit of the first byte.
constexpr char Schema[] = R"(
    CREATE TABLE IF NOT EXISTS merged (
        plan TEXT NOT NULL,
        shard INTEGER NOT NULL,
        films BLOB NOT NULL,
        PRIMARY KEY (plan, shard)
    ) STRICT
)";

std::string MakeBits(const std::vector<bool>& films)
{
    std::string bits((films.size() + 7) / 8, '\0');
    for (size_t index = 0; index < films.size(); ++index)
        if (films[index])
            bits[index / 8] = static_cast<char>(bits[index / 8] | 1 << index % 8);
    return bits;
}
}

CMergedFilms::CMergedFilms(const CCatalog& catalog, const CPlan& plan) : m_plan(plan)
{
    CStatement(catalog.GetDatabase(), Schema).Run();
    m_get.emplace(catalog.GetDatabase(), "SELECT films FROM merged WHERE plan = ? AND shard = ?");
    m_set.emplace(catalog.GetDatabase(), "INSERT OR REPLACE INTO merged VALUES (?, ?, ?)");
}

std::vector<bool> CMergedFilms::Get(int64_t shard)
{
    std::vector<bool> films(static_cast<size_t>(m_plan.GetCount(shard)));
    m_get->BindText(1, m_plan.GetFacts().ID).Bind(2, shard);
    if (!m_get->Step())
        return films;
    const std::string bits = m_get->GetBytes(0);
    m_get->Step();
    for (size_t index = 0; index < films.size() && index / 8 < bits.size(); ++index)
        films[index] = (bits[index / 8] >> index % 8 & 1) != 0;
    return films;
}

void CMergedFilms::Set(int64_t shard, const std::vector<bool>& films)
{
    m_set->BindText(1, m_plan.GetFacts().ID).Bind(2, shard).BindBytes(3, MakeBits(films)).Run();
}
