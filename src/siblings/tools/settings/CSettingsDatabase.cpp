#include "siblings/tools/settings/CSettingsDatabase.h"

#include "core/string/ZVStringUTF8.h"

#include <ctime>
#include <memory>

namespace
{
constexpr int BusyTimeoutMilliseconds = 5000;

// Between two tries to change the journal mode, for which the library does not wait by itself.
constexpr int BusyPauseMilliseconds = 10;

// The low byte of a result code is its kind, what is above tells it apart further.
int KindOf(int code)
{
    return code & 0xff;
}

void Sleep(int milliseconds)
{
    timespec time {};
    time.tv_nsec = milliseconds * 1'000'000L;
    nanosleep(&time, nullptr);
}
}

CSettingsResult CSettingsDatabase::Open(const char* path)
{
    Close();
    // The caller's lock does for this connection; another thread's connection is another one.
    constexpr int Flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    CSettingsResult result = ResultOf(m_library.sqlite3_open_v2(path, &m_connection, Flags, nullptr));
    if (result == CSettingsResult::Done)
        result = Prepare();
    if (result != CSettingsResult::Done)
        Close();
    return result;
}

CSettingsResult CSettingsDatabase::Prepare()
{
    m_library.sqlite3_busy_timeout(m_connection, BusyTimeoutMilliseconds);
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
    CSettingsResult result = CSettingsResult::Failed;
    for (int waited = 0; waited < BusyTimeoutMilliseconds; waited += BusyPauseMilliseconds)
    {
        result = Execute("PRAGMA journal_mode = WAL");
        if (result != CSettingsResult::Failed || !m_isBusy)
            break;
        Sleep(BusyPauseMilliseconds);
    }
    return result;
}

void CSettingsDatabase::Close()
{
    if (m_connection != nullptr)
        m_library.sqlite3_close(m_connection);
    m_connection = nullptr;
}

// What a result code of the library means. A failure's text is kept.
CSettingsResult CSettingsDatabase::ResultOf(int code)
{
    const int kind = KindOf(code);
    m_isBusy = kind == SQLITE_BUSY || kind == SQLITE_LOCKED;
    if (kind == SQLITE_OK || kind == SQLITE_ROW || kind == SQLITE_DONE)
        return CSettingsResult::Done;
    m_error.SetFromUTF8(m_connection == nullptr ? "out of memory" : m_library.sqlite3_errmsg(m_connection));
    return kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB ? CSettingsResult::Damaged : CSettingsResult::Failed;
}

// Runs one statement with its values. With a result the first column of its first row is read, and no row is NotFound; without,
// its rows do not count.
CSettingsResult CSettingsDatabase::Execute(const char* text, std::initializer_list<const wchar_t*> values, ZVString* result)
{
    sqlite3_stmt* prepared = nullptr;
    int code = m_library.sqlite3_prepare_v2(m_connection, text, -1, &prepared, nullptr);
    // A statement that were left behind would keep the connection from being closed.
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

CSettingsResult CSettingsDatabase::End(bool keepChanges)
{
    return Execute(keepChanges ? "COMMIT" : "ROLLBACK");
}
