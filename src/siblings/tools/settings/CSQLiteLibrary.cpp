#include "siblings/tools/settings/CSQLiteLibrary.h"

#include "system/library/ZVRunTimeLibrary.h"

bool CSQLiteLibrary::Load(const char* fileName)
{
    if (m_isLoaded)
        return true;
    ZVRunTimeLibrary library(fileName);
    library.Bind("sqlite3_open_v2", Open);
    library.Bind("sqlite3_close", Close);
    library.Bind("sqlite3_busy_timeout", SetBusyTimeout);
    library.Bind("sqlite3_errmsg", GetErrorMessage);
    library.Bind("sqlite3_prepare_v2", Prepare);
    library.Bind("sqlite3_bind_text", BindText);
    library.Bind("sqlite3_step", Step);
    library.Bind("sqlite3_column_text", GetColumnText);
    library.Bind("sqlite3_finalize", Finalize);
    m_isLoaded = library.IsComplete();
    return m_isLoaded;
}
