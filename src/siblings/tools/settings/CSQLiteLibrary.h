#pragma once

#include "system/library/ZVFunctionTable.h"

#include <sqlite3.h>

// clang-format off
#define ZV_SQLITE_FUNCTIONS(function) \
    function(sqlite3_open_v2)         \
    function(sqlite3_close)           \
    function(sqlite3_busy_handler)    \
    function(sqlite3_errmsg)          \
    function(sqlite3_prepare_v2)      \
    function(sqlite3_bind_text)       \
    function(sqlite3_step)            \
    function(sqlite3_column_text)     \
    function(sqlite3_finalize)
// clang-format on
ZV_DEFINE_FUNCTION_TABLE(CSQLiteFunctions, ZV_SQLITE_FUNCTIONS);

// The functions of SQLite that the settings need, bound at run time: most processes never read a setting and should not pay for
// the library.
struct CSQLiteLibrary : CSQLiteFunctions
{
    // Opens the library, unless it is open, and binds all functions. False if it is not installed or lacks one of them. It is
    // never closed.
    bool Load(const char* fileName);

private:
    bool m_isLoaded = false;
};
