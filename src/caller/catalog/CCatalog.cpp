#include "caller/catalog/CCatalog.h"

#include "caller/film/FilmFields.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
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

// The picture stands in a table of its own, so that lists do not read past it. %FIELDS% are columns for the fields of a film.
constexpr char Schema[] = R"(
    CREATE TABLE films (
        id INTEGER PRIMARY KEY,
        path BLOB NOT NULL UNIQUE,
        stat_size INTEGER NOT NULL,
        stat_mtime INTEGER NOT NULL,
        stat_inode INTEGER NOT NULL,
        done INTEGER NOT NULL,
        failed INTEGER NOT NULL,
        vanished INTEGER NOT NULL DEFAULT 0,
        scanned INTEGER NOT NULL,
        error TEXT,
        errors TEXT NOT NULL,
        %FIELDS%
        facts TEXT NOT NULL
    ) STRICT;
    CREATE TABLE pictures (
        film INTEGER PRIMARY KEY REFERENCES films ON DELETE CASCADE,
        picture BLOB NOT NULL
    ) STRICT;
)";

constexpr const char* ColumnTypes[] = {"TEXT", "REAL", "TEXT"};  // by FieldKind

// The fields that have a column of their own.
template <class Function>
void ForEachColumn(Function function)
{
    for (const FilmField& field : GetFilmFields())
        if (std::string_view(field.Name) != "path")
            function(field);
}

std::string MakeSchema()
{
    constexpr std::string_view Mark = "%FIELDS%";
    std::string columns;
    ForEachColumn([&](const FilmField& field)
                  { columns += std::string(field.Name) + ' ' + ColumnTypes[static_cast<int>(field.Kind)] + ", "; });
    std::string schema = Schema;
    return schema.replace(schema.find(Mark), Mark.size(), columns);
}

std::string MakeStoring()
{
    std::string columns = "path, stat_size, stat_mtime, stat_inode, done, failed, scanned, error, errors, facts";
    ForEachColumn([&](const FilmField& field) { columns += std::string(", ") + field.Name; });
    const auto count = std::ranges::count(columns, ',');
    std::string marks = "?";
    for (auto mark = 0; mark < count; ++mark)
        marks += ", ?";
    std::string text =
        "INSERT INTO films (" + columns + ") VALUES (" + marks + ") ON CONFLICT (path) DO UPDATE SET (" + columns + ") = (";
    std::string news = "excluded." + columns;
    for (size_t place = 0; (place = news.find(", ", place)) != std::string::npos;)
        news.insert(place += 2, "excluded.");
    return text + news + "), vanished = 0 RETURNING id";
}

std::string Dump(const nlohmann::json& value)
{
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void BindField(CStatement& statement, int parameter, const nlohmann::json& value)
{
    if (value.is_number())
        statement.Bind(parameter, value.get<double>());
    else if (value.is_string())
        statement.BindText(parameter, value.get<std::string>());
    else if (value.is_array() && !value.empty())
        statement.BindText(parameter, JoinWords(value));
    else
        statement.BindNull(parameter);
}

CTaskSet GetFailedTasks(const CFindings& findings)
{
    CTaskSet failed;
    for (const Task& task : GetTasks())
        if (findings.Errors.contains(task.Name))
            failed = failed | task.Kind;
    return failed;
}

// An absolute path as an address of SQLite, for a file that does not change while it is open.
std::string MakeAddress(const fs::path& path)
{
    std::string address = "file:";
    for (const char byte : path.native())
    {
        std::array<char, 4> code;
        snprintf(code.data(), code.size(), "%%%02X", static_cast<uint8_t>(byte));
        address += byte == '/' || isalnum(static_cast<uint8_t>(byte)) != 0 ? std::string(1, byte) : code.data();
    }
    return address + "?immutable=1";
}

// Whether a catalog that nobody writes stands in a folder in which the files cannot be made that SQLite shares between programs.
bool IsSealed(const fs::path& path)
{
    std::error_code ignored;
    return access(path.parent_path().c_str(), W_OK) != 0 && !fs::exists(path.string() + "-wal", ignored);
}

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
        MakeFolder(path);
        TakeLock(path);
    }
    else if (!fs::exists(path))
        throw std::runtime_error("there is no catalog " + path.string() + ": zivora scan makes one");
    Open(path, access);
    // A file of another program stays as it is.
    const bool isNew = access == Access::Change && IsNew();
    if (!isNew)
        CheckVersion(path);
    if (access == Access::Change)
        Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON;");
    if (isNew)
        MakeTables();
}

CCatalog::~CCatalog()
{
    m_find.reset();
    m_known.reset();
    m_store.reset();
    m_present.reset();
    m_database.reset();
}

void CCatalog::MakeFolder(const fs::path& path) const
{
    std::error_code error;
    if (path.has_parent_path())
        fs::create_directories(path.parent_path(), error);
    if (error)
        throw std::runtime_error("no folder can be made for the catalog " + path.string() + ": " + error.message());
    if (fs::exists(path, error) && !fs::is_regular_file(path, error))
        throw std::runtime_error("the file " + path.string() + " is no catalog of films");
}

// A file beside the catalog, since SQLite has locks of its own in it. Where there are no locks it is the user who takes care.
void CCatalog::TakeLock(const fs::path& path)
{
    const std::string name = path.string() + ".lock";
    m_lock = CDescriptor(open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
    if (!m_lock.IsOpen())
        throw std::runtime_error("the catalog " + path.string() + " cannot be written: " + strerror(errno));
    if (flock(m_lock.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        throw std::runtime_error("another scan is at work on the catalog " + path.string());
}

void CCatalog::Open(const fs::path& path, Access access)
{
    const int flags = access == Access::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    const bool isSealed = access == Access::Read && !error && IsSealed(target);
    const std::string name = isSealed ? MakeAddress(target) : fs::absolute(path).string();
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2(name.c_str(), &database, flags | (isSealed ? SQLITE_OPEN_URI : 0), nullptr);
    m_database.reset(database);
    if (result != SQLITE_OK)
        throw std::runtime_error("the catalog " + path.string() + " cannot be opened: " + sqlite3_errmsg(database));
    sqlite3_busy_timeout(database, 10'000);
    // The file is read for the first time here.
    if (sqlite3_exec(database, "PRAGMA schema_version", nullptr, nullptr, nullptr) == SQLITE_NOTADB)
        throw std::runtime_error("the file " + path.string() + " is no catalog of films");
}

int64_t CCatalog::GetNumber(const char* query) const
{
    CStatement statement(GetDatabase(), query);
    return statement.Step() ? statement.GetNumber(0) : 0;
}

bool CCatalog::IsNew() const
{
    return GetNumber("PRAGMA user_version") == 0 && GetNumber("PRAGMA application_id") == 0 &&
           GetNumber("SELECT count(*) FROM sqlite_master") == 0;
}

void CCatalog::CheckVersion(const fs::path& path) const
{
    const int64_t version = GetNumber("PRAGMA user_version");
    if (GetNumber("PRAGMA application_id") != ApplicationID)
        throw std::runtime_error("the file " + path.string() + " is no catalog of films");
    if (version != SchemaVersion)
        throw std::runtime_error("the catalog " + path.string() + " has the version " + std::to_string(version) +
                                 ", and this program reads version " + std::to_string(SchemaVersion));
}

void CCatalog::MakeTables()
{
    Begin();
    Execute(MakeSchema().c_str());
    Execute(
        ("PRAGMA application_id = " + std::to_string(ApplicationID) + "; PRAGMA user_version = " + std::to_string(SchemaVersion))
            .c_str());
    Commit();
}

void CCatalog::Execute(const char* text) const
{
    if (sqlite3_exec(m_database.get(), text, nullptr, nullptr, nullptr) != SQLITE_OK)
        FailOfDatabase(m_database.get());
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
        m_find.emplace(
            GetDatabase(),
            "SELECT id, stat_size, stat_mtime, stat_inode, done, failed, kind = 'Audio', vanished FROM films WHERE path = ?");
    m_find->BindBytes(1, path);
    if (!m_find->Step())
        return std::nullopt;
    CCatalogRow row {
        .ID = m_find->GetNumber(0),
        .Identity = {m_find->GetNumber(1), m_find->GetNumber(2), m_find->GetNumber(3)},
        .Done = CTaskSet::FromBits(m_find->GetNumber(4)),
        .Failed = CTaskSet::FromBits(m_find->GetNumber(5)),
        .IsSound = m_find->GetNumber(6) != 0,
        .HasVanished = m_find->GetNumber(7) != 0
    };
    m_find->Step();
    return row;
}

// Adds what other tasks found out earlier. False if that was about another content, or nothing.
bool CCatalog::AddKnown(const CFileIdentity& identity, CFindings& findings)
{
    const std::optional<CCatalogRow> row = Find(findings.Film.Path);
    if (!row || row->Identity != identity)
        return false;
    if (!m_known)
        m_known.emplace(GetDatabase(), "SELECT facts, errors FROM films WHERE id = ?");
    m_known->Bind(1, row->ID);
    m_known->Step();
    const nlohmann::json facts = nlohmann::json::parse(m_known->GetBytes(0));
    const nlohmann::json errors = nlohmann::json::parse(m_known->GetBytes(1));
    m_known->Step();
    for (const auto& [key, value] : facts.items())
        if (!findings.Film.Values.contains(key))
            findings.Film.Values[key] = value;
    for (const Task& task : GetTasks())
        if (!findings.Done.Has(task.Kind) && errors.contains(task.Name))
            findings.Errors[task.Name] = errors[task.Name];
    findings.Done = findings.Done | row->Done;
    return true;
}

void CCatalog::Store(const CFindings& found, const CFileIdentity& identity)
{
    Begin();
    CFindings findings = found;
    const bool isKnown = AddKnown(identity, findings);
    if (!m_store)
        m_store.emplace(GetDatabase(), MakeStoring());
    int parameter = 1;
    m_store->BindBytes(parameter++, findings.Film.Path);
    for (const int64_t number : {identity.Size, identity.ModificationTime, identity.Inode, findings.Done.GetBits(),
                                 GetFailedTasks(findings).GetBits(), static_cast<int64_t>(time(nullptr))})
        m_store->Bind(parameter++, number);
    const std::string error = findings.GetError();
    BindField(*m_store, parameter++, error.empty() ? nlohmann::json() : nlohmann::json(error));
    m_store->BindText(parameter++, Dump(findings.Errors));
    m_store->BindText(parameter++, Dump(findings.Film.Values));
    ForEachColumn([&](const FilmField& field) { BindField(*m_store, parameter++, field.Get(findings.Film)); });
    m_store->Step();
    const int64_t id = m_store->GetNumber(0);
    m_store->Step();
    if (!isKnown || found.Done.Has(TaskKind::Picture))
        StorePicture(id, found);
}

void CCatalog::StorePicture(int64_t id, const CFindings& findings)
{
    if (findings.Picture.empty())
        CStatement(GetDatabase(), "DELETE FROM pictures WHERE film = ?").Bind(1, id).Run();
    else
        CStatement(GetDatabase(), "INSERT OR REPLACE INTO pictures VALUES (?, ?)")
            .Bind(1, id)
            .BindBytes(2, findings.Picture)
            .Run();
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
