#pragma once

#include "caller/catalog/CStatement.h"
#include "caller/scan/CFolderWalk.h"

#include <memory>
#include <optional>

// The films that a scan has still to look at, in the order in which they were found. They are in a temporary file, so a library of any
// size takes the same memory.
class CScanQueue
{
public:
    CScanQueue();

    // A film and what is to be found out about it.
    struct Entry
    {
        CFolderWalk::Film Film;
        CTaskSet Tasks;
    };

    void Add(const Entry& entry);
    // Nothing when there is none.
    std::optional<Entry> Take();
    int64_t GetCount() const { return m_added - m_taken; }

private:
    struct Close
    {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };

    std::unique_ptr<sqlite3, Close> m_database;
    std::optional<CStatement> m_add;
    std::optional<CStatement> m_take;
    int64_t m_added = 0;
    int64_t m_taken = 0;
};
