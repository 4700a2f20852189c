#pragma once

#include "core/string/ZVString.h"
#include "siblings/tools/settings/CSQLiteLibrary.h"

#include <initializer_list>

// How an operation on the database went.
enum class CSettingsResult
{
    Done,
    NotFound,  // there is no such setting
    Failed,    // GetError tells why
    Damaged,   // the file is no database, or a broken one
};

// The SQLite database of the settings: one table, "settings", with section and name as its key. It is in write-ahead mode, and
// another process that holds it is waited for, up to five seconds. Used by one thread at a time.
class CSettingsDatabase
{
public:
    // The library is loaded when Open is called, and outlives the database.
    explicit CSettingsDatabase(const CSQLiteLibrary& library) : m_library(library) {}
    ~CSettingsDatabase() { Close(); }

    CSettingsDatabase(const CSettingsDatabase&) = delete;
    CSettingsDatabase& operator=(const CSettingsDatabase&) = delete;

    // Opens the file, which is made if it is not there, with the table in it. After any other result than Done it is closed.
    CSettingsResult Open(const char* path);
    void Close();
    bool IsOpen() const { return m_connection != nullptr; }

    CSettingsResult Read(const wchar_t* section, const wchar_t* name, ZVString& value);
    CSettingsResult Write(const wchar_t* section, const wchar_t* name, const wchar_t* value);
    // Done also when there was no such setting.
    CSettingsResult Remove(const wchar_t* section, const wchar_t* name);

    // What is written between these two is written together. Begin keeps other processes from writing until the end.
    CSettingsResult Begin();
    CSettingsResult End(bool keepChanges);

    // The reason of the last failure.
    const ZVString& GetError() const { return m_error; }

private:
    CSettingsResult Execute(const char* text, std::initializer_list<const wchar_t*> values = {}, ZVString* result = nullptr);
    CSettingsResult Prepare();
    CSettingsResult UseWriteAheadLog();
    CSettingsResult ResultOf(int code);

    const CSQLiteLibrary& m_library;
    sqlite3* m_connection = nullptr;
    bool m_isBusy = false;
    ZVString m_error;
};
