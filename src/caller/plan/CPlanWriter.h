#pragma once

#include "caller/files/CDescriptor.h"
#include "caller/plan/CPlan.h"
#include "caller/plan/PlanLines.h"
#include "caller/scan/CScan.h"

#include <string>
#include <vector>

// What a plan is made of.
struct CPlanRequest
{
    std::filesystem::path Folder;  // of the plan
    std::vector<std::filesystem::path> FilmFolders;
    int64_t Shards = 1;
    CScanOptions Options;
    CCatalog* Catalog = nullptr;  // what it has as it is now is left out; nullptr for all films
};

// What came of it.
struct CPlanCounts
{
    int64_t Films = 0;      // in the plan
    int64_t Unchanged = 0;  // left out
    int64_t Unreadable = 0;
};

// Writes a plan: whole or not at all. It is made in a folder beside its own, with ".part" behind the name; one that a killed program left
// there is removed.
//
// What goes wrong is thrown as std::runtime_error with a sentence for the user.
class CPlanWriter
{
public:
    // Throws if there is something already where the plan is to be.
    explicit CPlanWriter(const CPlanRequest& request);
    CPlanWriter(const CPlanWriter&) = delete;
    CPlanWriter& operator=(const CPlanWriter&) = delete;
    // Removes what was not finished.
    ~CPlanWriter();

    // Walks through the folders. When the user interrupts it, no plan is left.
    CPlanCounts Write();

private:
    void TakePlace();
    bool Walk(const std::filesystem::path& folder);
    void See(const CFolderWalk::Film& found);
    CTaskSet GetTasks(const CFolderWalk::Film& found) const;
    void Add(const CPlannedFilm& film);
    void Flush();
    void Finish();

    CPlanRequest m_request;
    std::filesystem::path m_part;  // empty when there is none
    CDescriptor m_lock;
    CPlanCounts m_counts;
    std::vector<std::filesystem::path> m_folders;  // that have films
    std::vector<std::string> m_lines;              // by shards, to be written
    size_t m_waiting = 0;                          // bytes of them
};
