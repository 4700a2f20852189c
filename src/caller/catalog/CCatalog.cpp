#include "caller/catalog/CCatalog.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

// "zvca", by which tools know the file.
constexpr int ApplicationID = 0x7a766361;
constexpr int SchemaVersion = 1;

// The picture stands in a table of its own, so that lists do not read past it.
constexpr char Schema[] = R"(
    CREATE TABLE films (
        id INTEGER PRIMARY KEY,
        path BLOB NOT NULL UNIQUE,
        size INTEGER NOT NULL,
        mtime INTEGER NOT NULL,
        inode INTEGER NOT NULL,
        device INTEGER NOT NULL,
        tasks INTEGER NOT NULL,
        error TEXT,
        vanished INTEGER NOT NULL DEFAULT 0,
        scanned INTEGER NOT NULL,
        facts TEXT NOT NULL
    ) STRICT;
    CREATE TABLE pictures (
        film INTEGER PRIMARY KEY REFERENCES films ON DELETE CASCADE,
        picture BLOB NOT NULL
    ) STRICT;
)";

// The first path that does not begin with the bytes of a folder's path: all that do stand before it.
std::string GetEnd(std::string folder)
{
    while (!folder.empty() && folder.back() == '\xff')
        folder.pop_back();
    if (!folder.empty())
        ++folder.back();
    return folder;
}
}

CCatalog::CCatalog(const fs::path& path, Access access)
{
    if (access == Access::Change)
    {
        if (path.has_parent_path())
            fs::create_directories(path.parent_path());
        TakeLock(path);
    }
    Open(path, access);
    CheckVersion(access);
}

CCatalog::~CCatalog()
{
    m_find.reset();
    m_store.reset();
    m_present.reset();
    m_database.reset();
    if (m_lock >= 0)
        close(m_lock);
}

// A file beside the catalog, since SQLite has locks of its own in it.
void CCatalog::TakeLock(const fs::path& path)
{
    const std::string name = path.string() + ".lock";
    m_lock = open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_lock < 0)
        throw std::runtime_error("the catalog " + path.string() + " cannot be written: " + strerror(errno));
    if (flock(m_lock, LOCK_EX | LOCK_NB) == 0)
        return;
    const int error = errno;
    close(m_lock);
    m_lock = -1;
    if (error == EWOULDBLOCK)
        throw std::runtime_error("another scan is at work on the catalog " + path.string());
}

void CCatalog::Open(const fs::path& path, Access access)
{
    const int flags = access == Access::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
    m_database.reset(database);
    if (result != SQLITE_OK)
        throw std::runtime_error("the catalog " + path.string() + " cannot be opened: " + sqlite3_errmsg(database));
    sqlite3_busy_timeout(database, 10'000);
    if (access == Access::Change)
        Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON;");
}

void CCatalog::CheckVersion(Access access)
{
    const auto getNumber = [this](const char* pragma)
    {
        CStatement statement(GetDatabase(), pragma);
        return statement.Step() ? statement.GetNumber(0) : 0;
    };
    const int64_t version = getNumber("PRAGMA user_version");
    const int64_t application = getNumber("PRAGMA application_id");
    const int64_t tables = getNumber("SELECT count(*) FROM sqlite_master");
    if (version == 0 && application == 0 && tables == 0 && access == Access::Change)
    {
        Begin();
        Execute(Schema);
        Execute(("PRAGMA application_id = " + std::to_string(ApplicationID) +
                 "; PRAGMA user_version = " + std::to_string(SchemaVersion))
                    .c_str());
        Commit();
        return;
    }
    if (application != ApplicationID)
        throw std::runtime_error("the file is no catalog of films");
    if (version != SchemaVersion)
        throw std::runtime_error("the catalog has the version " + std::to_string(version) + ", and this program reads version " +
                                 std::to_string(SchemaVersion));
}

void CCatalog::Execute(const char* text) const
{
    if (sqlite3_exec(m_database.get(), text, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(std::string("the catalog: ") + sqlite3_errmsg(m_database.get()));
}

void CCatalog::Begin()
{
    if (!m_isChanging)
        Execute("BEGIN IMMEDIATE");
    m_isChanging = true;
}

void CCatalog::Commit()
{
    if (m_isChanging)
        Execute("COMMIT");
    m_isChanging = false;
}

std::optional<CCatalogRow> CCatalog::Find(const std::string& path)
{
    if (!m_find)
        m_find.emplace(GetDatabase(),
                       "SELECT id, size, mtime, inode, device, tasks, error IS NOT NULL, vanished FROM films WHERE path = ?");
    m_find->BindBytes(1, path);
    if (!m_find->Step())
        return std::nullopt;
    CCatalogRow row {
        .ID = m_find->GetNumber(0),
        .Identity = {m_find->GetNumber(1), m_find->GetNumber(2), m_find->GetNumber(3), m_find->GetNumber(4)},
        .Tasks = m_find->GetNumber(5),
        .HasFailed = m_find->GetNumber(6) != 0,
        .HasVanished = m_find->GetNumber(7) != 0
    };
    m_find->Step();
    return row;
}

void CCatalog::Store(const Entry& entry)
{
    Begin();
    if (!m_store)
        m_store.emplace(GetDatabase(), R"(
            INSERT INTO films (path, size, mtime, inode, device, tasks, error, scanned, facts) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)
            ON CONFLICT (path) DO UPDATE SET size = excluded.size, mtime = excluded.mtime, inode = excluded.inode,
                device = excluded.device, tasks = excluded.tasks, error = excluded.error, scanned = excluded.scanned,
                facts = excluded.facts, vanished = 0
            RETURNING id)");
    m_store->BindBytes(1, entry.Film.Path);
    int parameter = 2;
    for (const int64_t number :
         {entry.Identity.Size, entry.Identity.ModificationTime, entry.Identity.Inode, entry.Identity.Device, entry.Tasks})
        m_store->Bind(parameter++, number);
    if (entry.Error.empty())
        m_store->BindNull(parameter++);
    else
        m_store->BindText(parameter++, ToUTF8(entry.Error));
    m_store->Bind(parameter++, static_cast<int64_t>(time(nullptr)));
    m_store->BindText(parameter, entry.Film.Values.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
    m_store->Step();
    const int64_t id = m_store->GetNumber(0);
    m_store->Step();
    if (!entry.Picture.empty())
        CStatement(GetDatabase(), "INSERT OR REPLACE INTO pictures VALUES (?, ?)").Bind(1, id).BindBytes(2, entry.Picture).Run();
}

int64_t CCatalog::MarkVanished(const std::string& folder, const std::function<bool(int64_t id, const std::string& path)>& isThere)
{
    const std::string start = folder.ends_with('/') ? folder : folder + '/';
    std::vector<int64_t> gone;
    CStatement rows(GetDatabase(), "SELECT id, path FROM films WHERE vanished = 0 AND path >= ? AND path < ?");
    rows.BindBytes(1, start).BindBytes(2, GetEnd(start));
    while (rows.Step())
        if (const int64_t id = rows.GetNumber(0); !isThere(id, rows.GetBytes(1)))
            gone.push_back(id);
    Begin();
    CStatement mark(GetDatabase(), "UPDATE films SET vanished = 1 WHERE id = ?");
    for (const int64_t id : gone)
        mark.Bind(1, id).Run();
    return static_cast<int64_t>(gone.size());
}

void CCatalog::MarkPresent(int64_t id)
{
    Begin();
    if (!m_present)
        m_present.emplace(GetDatabase(), "UPDATE films SET vanished = 0 WHERE id = ?");
    m_present->Bind(1, id).Run();
}
