#pragma once

#include "caller/tasks/CTaskSet.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// What a plan says of itself.
struct CPlanFacts
{
    std::string ID = {};  // no other plan has it
    int64_t Shards = 0;
    int64_t Films = 0;
    int64_t Created = 0;                              // in seconds since 1970
    CTaskSet Tasks;                                   // what was asked for; each film says what it needs of that
    std::vector<std::filesystem::path> Folders = {};  // in which there are films
};

// A plan: a folder with the films of a library in shards, each of which any machine that sees the same files can work on by itself, and
// with what came of them.
//
//   plan.json                     what the plan is; it is written last, so a plan that has it is whole
//   shards/3.jsonl                the films of a shard, a line for each
//   results/3/<a name>.jsonl      the results of one run, a line for each film as soon as it is known; a line at the start says
//                                 whose they are. Each run has a file of its own, so none can damage what another found out.
//   results/3/finished.json       that the shard is finished, and in which of these files its results are
//
// Shards count from 1. The film number k of the library, from 0, is in the shard 1 + k % Shards, so a shard has films from everywhere.
class CPlan
{
public:
    // Throws std::runtime_error with a sentence for the user if there is no plan, or one of another version.
    explicit CPlan(const std::filesystem::path& folder);

    const CPlanFacts& GetFacts() const { return m_facts; }
    const std::filesystem::path& GetFolder() const { return m_folder; }
    std::filesystem::path GetShardFile(int64_t shard) const { return GetShardFile(m_folder, shard); }
    std::filesystem::path GetResultFolder(int64_t shard) const;
    std::filesystem::path GetFinishedFile(int64_t shard) const { return GetResultFolder(shard) / "finished.json"; }
    // How many films a shard has.
    int64_t GetCount(int64_t shard) const;

    static std::filesystem::path GetFactsFile(const std::filesystem::path& folder) { return folder / "plan.json"; }
    static std::filesystem::path GetShardFile(const std::filesystem::path& folder, int64_t shard);
    // The text of the file that says what a plan is.
    static std::string MakeFacts(const CPlanFacts& facts);

private:
    std::filesystem::path m_folder;
    CPlanFacts m_facts;
};

// A name that nobody else has: 32 hexadecimal digits.
std::string MakeUniqueName();
