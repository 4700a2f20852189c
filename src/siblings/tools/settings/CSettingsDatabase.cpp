#include "siblings/tools/settings/CSettingsDatabase.h"

#include "core/string/ZVStringUTF8.h"

#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace
{
struct ResultMeaning
{
    int Kind;
    CSettingsResult Result;
};

// What the library's result codes mean. Every other is a failure.
constexpr ResultMeaning ResultMeanings[] = {
    {SQLITE_OK,       CSettingsResult::Done   },
    {SQLITE_ROW,      CSettingsResult::Done   },
    {SQLITE_DONE,     CSettingsResult::Done   },
    {SQLITE_BUSY,     CSettingsResult::Busy   },
    {SQLITE_LOCKED,   CSettingsResult::Busy   },
    {SQLITE_PROTOCOL, CSettingsResult::Busy   },
    {SQLITE_CORRUPT,  CSettingsResult::Damaged},
    {SQLITE_NOTADB,   CSettingsResult::Damaged},
};

// The low byte of a result code is its kind; the rest tells more about it.
int KindOf(int code)
{
    return code & 0xff;
}

// The library calls this when another process holds the database. 0 ends its waiting.
int OnBusy(void* wait, int)
{
    return static_cast<const CWaitLimit*>(wait)->WaitABit() ? 1 : 0;
}

// What can be seen of a database file without opening it.
class FileState
{
public:
    explicit FileState(const std::string& path) : m_isThere(stat(path.c_str(), &m_status) == 0)
    {
        for (const char* const journal : {"-wal", "-journal"})
        {
            struct stat status;
            m_hasJournal |= stat((path + journal).c_str(), &status) == 0 && status.st_size > 0;
        }
    }

    // Whether all of its content is in the file itself.
    bool IsAtRest() const { return m_isThere && !m_hasJournal; }

    bool IsSame(const FileState& other) const
    {
        return IsAtRest() == other.IsAtRest() && m_status.st_ino == other.m_status.st_ino &&
               m_status.st_size == other.m_status.st_size && m_status.st_mtim.tv_sec == other.m_status.st_mtim.tv_sec &&
               m_status.st_mtim.tv_nsec == other.m_status.st_mtim.tv_nsec;
    }

private:
    struct stat m_status
    {
    };
    bool m_isThere;
    bool m_hasJournal = false;
};

// The name under which the library reads a file without locks and without files beside it.
std::string GetImmutableName(std::string_view path)
{
    constexpr char Digits[] = "0123456789ABCDEF";
    std::string name = path.starts_with('/') ? "file://" : "file:";
    for (const char character : path)
    {
        const auto byte = static_cast<unsigned char>(character);
        if (byte == '%' || byte == '?' || byte == '#')
            name.append({'%', Digits[byte >> 4], Digits[byte & 15]});
        else
            name.push_back(character);
    }
    return name + "?immutable=1";
}
}

CSettingsResult CSettingsDatabase::Open(const char* path)
{
    CSettingsResult result = Connect(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (result == CSettingsResult::Done)
        result = Prepare();
    if (result != CSettingsResult::Done)
        Close();
    return result;
}

CSettingsResult CSettingsDatabase::Connect(const char* name, int flags)
{
    Close();
    // The caller's lock does for this connection; another thread's connection is another one.
    const CSettingsResult result = ResultOf(m_library.sqlite3_open_v2(name, &m_connection, flags | SQLITE_OPEN_NOMUTEX, nullptr));
    if (result == CSettingsResult::Done)
        m_library.sqlite3_busy_handler(m_connection, OnBusy, const_cast<CWaitLimit*>(&m_wait));
    return result;
}

CSettingsResult CSettingsDatabase::Prepare()
{
    CSettingsResult result = UseWriteAheadLog();
    // In write-ahead mode this loses at most the last settings when the power fails, never the file.
    if (result == CSettingsResult::Done)
        result = Execute("PRAGMA synchronous = NORMAL");
    if (result == CSettingsResult::Done)
        result = Execute("CREATE TABLE IF NOT EXISTS settings (section TEXT NOT NULL, name TEXT NOT NULL, value TEXT NOT NULL, "
                         "PRIMARY KEY (section, name)) WITHOUT ROWID");
    return result;
}

CSettingsResult CSettingsDatabase::UseWriteAheadLog()
{
    // For this one statement the library does not wait by itself.
    CSettingsResult result = Execute("PRAGMA journal_mode = WAL");
    while (result == CSettingsResult::Busy && m_wait.WaitABit())
        result = Execute("PRAGMA journal_mode = WAL");
    return result;
}

void CSettingsDatabase::Close()
{
    if (m_connection != nullptr)
        m_library.sqlite3_close(m_connection);
    m_connection = nullptr;
}

// What a result code means. The text of a failure is kept.
CSettingsResult CSettingsDatabase::ResultOf(int code)
{
    CSettingsResult result = CSettingsResult::Failed;
    for (const ResultMeaning& meaning : ResultMeanings)
        if (meaning.Kind == KindOf(code))
            result = meaning.Result;
    if (result != CSettingsResult::Done)
        m_error.SetFromUTF8(m_connection == nullptr ? "out of memory" : m_library.sqlite3_errmsg(m_connection));
    return result;
}

// Runs one statement with its values. If result is given it receives the first column of the first row, and no row is NotFound;
// otherwise rows are ignored.
CSettingsResult CSettingsDatabase::Execute(const char* text, std::initializer_list<const wchar_t*> values, ZVString* result)
{
    sqlite3_stmt* prepared = nullptr;
    int code = m_library.sqlite3_prepare_v2(m_connection, text, -1, &prepared, nullptr);
    // A statement that is not finalized would keep the connection from being closed.
    const std::unique_ptr<sqlite3_stmt, decltype(m_library.sqlite3_finalize)> statement(prepared, m_library.sqlite3_finalize);
    int place = 0;
    for (const wchar_t* const value : values)
        if (KindOf(code) == SQLITE_OK)
            code = m_library.sqlite3_bind_text(prepared, ++place, ZVStringUTF8(value), -1, SQLITE_TRANSIENT);
    if (KindOf(code) == SQLITE_OK)
        code = m_library.sqlite3_step(prepared);
    CSettingsResult outcome = ResultOf(code);
    if (outcome == CSettingsResult::Done && result != nullptr)
    {
        if (code == SQLITE_ROW)
            result->SetFromUTF8(reinterpret_cast<const char*>(m_library.sqlite3_column_text(prepared, 0)));
        else
            outcome = CSettingsResult::NotFound;
    }
    return outcome;
}

CSettingsResult CSettingsDatabase::Read(const wchar_t* section, const wchar_t* name, ZVString& value)
{
    return Execute("SELECT value FROM settings WHERE section = ?1 AND name = ?2", {section, name}, &value);
}

CSettingsResult CSettingsDatabase::Write(const wchar_t* section, const wchar_t* name, const wchar_t* value)
{
    return Execute("INSERT INTO settings (section, name, value) VALUES (?1, ?2, ?3) "
                   "ON CONFLICT (section, name) DO UPDATE SET value = excluded.value",
                   {section, name, value});
}

CSettingsResult CSettingsDatabase::Remove(const wchar_t* section, const wchar_t* name)
{
    return Execute("DELETE FROM settings WHERE section = ?1 AND name = ?2", {section, name});
}

CSettingsResult CSettingsDatabase::Begin()
{
    return Execute("BEGIN IMMEDIATE");
}

CSettingsResult CSettingsDatabase::Commit()
{
    return Execute("COMMIT");
}

CSettingsResult CSettingsDatabase::RollBack()
{
    return Execute("ROLLBACK");
}

CSettingsResult CSettingsDatabase::ReadUnwritable(const char* path, const wchar_t* section, const wchar_t* name, ZVString& value)
{
    const auto readFrom = [&](const char* source, int flags)
    {
        CSettingsResult result = Connect(source, SQLITE_OPEN_READONLY | flags);
        if (result == CSettingsResult::Done)
            result = Read(section, name, value);
        Close();
        // Nobody could set it aside.
        return result == CSettingsResult::Damaged ? CSettingsResult::Failed : result;
    };
    // This does where the files that the library wants beside the database are there, since another process has it open.
    const CSettingsResult result = readFrom(path, 0);
    if (result != CSettingsResult::Failed)
        return result;
    // Where they can neither be found nor made, the file is read on its own. That is right only while nobody changes it.
    const FileState before(path);
    if (!before.IsAtRest())
        return result;
    const CSettingsResult unlockedResult = readFrom(GetImmutableName(path).c_str(), SQLITE_OPEN_URI);
    return before.IsSame(FileState(path)) ? unlockedResult : CSettingsResult::Failed;
}
