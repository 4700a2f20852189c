#pragma once

#include "caller/plan/CLineFile.h"
#include "caller/plan/CPlan.h"
#include "caller/plan/PlanLines.h"

#include <vector>

// The films of a shard by their numbers. They stay in their file, and only the places of the lines are in memory.
class CShardFilms
{
public:
    // Throws std::runtime_error with a sentence for the user if the shard's file has not the films that the plan says.
    CShardFilms(const CPlan& plan, int64_t shard);

    int64_t GetShard() const { return m_shard; }
    int64_t GetCount() const { return static_cast<int64_t>(m_starts.size()); }
    // The film of a number from 0. Nothing if its line is damaged.
    std::optional<CPlannedFilm> Get(int64_t number);

private:
    int64_t m_shard;
    CLineFile m_file;
    std::vector<std::streamoff> m_starts;
};
