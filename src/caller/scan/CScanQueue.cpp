#include "caller/scan/CScanQueue.h"

#include <stdexcept>

CScanQueue::CScanQueue()
{
    // Without a name it is a temporary file that goes with the database.
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2("", &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_database.reset(database);
    constexpr char Schema[] = "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -2000; BEGIN;"
                              "CREATE TABLE films (id INTEGER PRIMARY KEY, path BLOB, size, mtime, inode, tasks)";
    if (result != SQLITE_OK || sqlite3_exec(database, Schema, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(std::string("no temporary file for the list of films: ") + sqlite3_errmsg(database));
    m_add.emplace(database, "INSERT INTO films VALUES (?, ?, ?, ?, ?, ?)");
    m_take.emplace(database, "SELECT path, size, mtime, inode, tasks FROM films WHERE id = ?");
}

void CScanQueue::Add(const Entry& entry)
{
    m_add->Bind(1, ++m_added).BindBytes(2, entry.Film.Path);
    int parameter = 3;
    for (const int64_t number :
         {entry.Film.Identity.Size, entry.Film.Identity.ModificationTime, entry.Film.Identity.Inode, entry.Tasks.GetBits()})
        m_add->Bind(parameter++, number);
    m_add->Run();
}

std::optional<CScanQueue::Entry> CScanQueue::Take()
{
    if (m_taken == m_added)
        return std::nullopt;
    m_take->Bind(1, ++m_taken);
    m_take->Step();
    const CFileIdentity identity {m_take->GetNumber(1), m_take->GetNumber(2), m_take->GetNumber(3)};
    Entry entry {
        .Film = {m_take->GetBytes(0), identity},
          .Tasks = CTaskSet::FromBits(m_take->GetNumber(4))
    };
    m_take->Step();
    return entry;
}
