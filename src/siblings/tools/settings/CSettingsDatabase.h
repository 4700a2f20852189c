#pragma once

#include "core/string/ZVString.h"
#include "siblings/tools/settings/CSQLiteLibrary.h"
#include "siblings/tools/settings/CWaitLimit.h"

#include <initializer_list>

// How an operation on the database went.
enum class CSettingsResult
{
    Done,
    NotFound,  // there is no such setting
    Busy,      // other processes held the database until the time for waiting was over
    Failed,    // GetError tells why
    Damaged,   // the file is no database, or a broken one
};

// The SQLite database of the settings: one table, "settings", with section and name as its key, in write-ahead mode. Used by one
// thread at a time.
class CSettingsDatabase
{
public:
    // The library is loaded by the time of the first operation. The limit is that of the present call; both outlive the database.
    CSettingsDatabase(const CSQLiteLibrary& library, const CWaitLimit& wait) : m_library(library), m_wait(wait) {}
    ~CSettingsDatabase() { Close(); }

    CSettingsDatabase(const CSettingsDatabase&) = delete;
    CSettingsDatabase& operator=(const CSettingsDatabase&) = delete;

    // Opens the file for changes, and creates it and its table if they do not exist. After any result but Done it is closed.
    CSettingsResult Open(const char* path);
    void Close();
    bool IsOpen() const { return m_connection != nullptr; }

    CSettingsResult Read(const wchar_t* section, const wchar_t* name, ZVString& value);
    CSettingsResult Write(const wchar_t* section, const wchar_t* name, const wchar_t* value);
    // Done even if there was no such setting.
    CSettingsResult Remove(const wchar_t* section, const wchar_t* name);

    // Everything that is written between Begin and Commit is written together, or not at all after RollBack. Begin keeps other
    // processes from writing until then.
    CSettingsResult Begin();
    CSettingsResult Commit();
    CSettingsResult RollBack();

    // Reads a setting of a file that Open cannot open because its folder or its disk takes no new files. The database is closed
    // afterwards. It is Failed if that cannot be done without misreading what another process is changing.
    CSettingsResult ReadUnwritable(const char* path, const wchar_t* section, const wchar_t* name, ZVString& value);

    // The reason of the last failure.
    const ZVString& GetError() const { return m_error; }

private:
    CSettingsResult Connect(const char* name, int flags);
    CSettingsResult Prepare();
    CSettingsResult UseWriteAheadLog();
    CSettingsResult Execute(const char* text, std::initializer_list<const wchar_t*> values = {}, ZVString* result = nullptr);
    CSettingsResult ResultOf(int code);

    const CSQLiteLibrary& m_library;
    const CWaitLimit& m_wait;
    sqlite3* m_connection = nullptr;
    ZVString m_error;
};
