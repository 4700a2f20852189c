#pragma once

#include "caller/plan/CPlan.h"
#include "caller/plan/CShardFilms.h"
#include "caller/plan/PlanLines.h"

#include <functional>
#include <vector>

// The line at the start of a file of results, which says whose they are.
std::string MakeResultHead(const CPlan& plan, int64_t shard);

// Reads what runs have found out about a shard, whether it is finished or not. The function gets each film once, with what the plan
// says of it, when there is a result. A damaged line is no result, which is said to the user; nor is any of another plan.
// Returns which films have one, by their numbers.
//
// Throws std::runtime_error with a sentence for the user if a file cannot be read to its end.
using ResultFunction = std::function<void(const CFilmResult& result, const CPlannedFilm& film)>;
std::vector<bool> ReadResults(const CPlan& plan, CShardFilms& films, const ResultFunction& onResult);

// Whether somebody has said that a shard is finished.
bool IsFinished(const CPlan& plan, int64_t shard);
// Says it. All that has been found out must be on the disk.
void MarkFinished(const CPlan& plan, int64_t shard);
// Takes it back. False if that cannot be done.
bool Reopen(const CPlan& plan, int64_t shard);
