#pragma once

#include <sqlite3.h>

// The functions of SQLite that the settings need, bound at run time: most processes never read a setting and should not pay for
// the library.
struct CSQLiteLibrary
{
    // Opens the library, if it is not open, and binds all functions. False when it is not there or lacks one. It is never closed.
    bool Load(const char* fileName);

    decltype(&sqlite3_open_v2) Open = nullptr;
    decltype(&sqlite3_close) Close = nullptr;
    decltype(&sqlite3_busy_timeout) SetBusyTimeout = nullptr;
    decltype(&sqlite3_errmsg) GetErrorMessage = nullptr;
    decltype(&sqlite3_prepare_v2) Prepare = nullptr;
    decltype(&sqlite3_bind_text) BindText = nullptr;
    decltype(&sqlite3_step) Step = nullptr;
    decltype(&sqlite3_column_text) GetColumnText = nullptr;
    decltype(&sqlite3_finalize) Finalize = nullptr;

private:
    bool m_isLoaded = false;
};
