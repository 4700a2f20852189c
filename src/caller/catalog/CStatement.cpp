#include "caller/catalog/CStatement.h"

#include <stdexcept>

void FailOfDatabase(sqlite3* database)
{
    const char* const name = sqlite3_db_filename(database, "main");
    const bool isTemporary = name == nullptr || *name == '\0';
    throw std::runtime_error((isTemporary ? "the temporary list of films: " : "the catalog " + std::string(name) + ": ") +
                             sqlite3_errmsg(database));
}

CStatement::CStatement(sqlite3* database, const std::string& text) : m_database(database)
{
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()), &statement, nullptr));
    m_statement.reset(statement);
}

void CStatement::Check(int result) const
{
    if (result != SQLITE_OK)
        FailOfDatabase(m_database);
}

CStatement& CStatement::Bind(int parameter, int64_t value)
{
    Check(sqlite3_bind_int64(m_statement.get(), parameter, value));
    return *this;
}

CStatement& CStatement::Bind(int parameter, double value)
{
    Check(sqlite3_bind_double(m_statement.get(), parameter, value));
    return *this;
}

CStatement& CStatement::BindText(int parameter, const std::string& text)
{
    Check(sqlite3_bind_text64(m_statement.get(), parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

CStatement& CStatement::BindBytes(int parameter, const std::string& bytes)
{
    Check(sqlite3_bind_blob64(m_statement.get(), parameter, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
    return *this;
}

CStatement& CStatement::BindNull(int parameter)
{
    Check(sqlite3_bind_null(m_statement.get(), parameter));
    return *this;
}

bool CStatement::Step()
{
    const int result = sqlite3_step(m_statement.get());
    if (result == SQLITE_ROW)
        return true;
    const int reset = sqlite3_reset(m_statement.get());
    Check(result == SQLITE_DONE ? reset : result);
    return false;
}

int64_t CStatement::GetNumber(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

double CStatement::GetReal(int column) const
{
    return sqlite3_column_double(m_statement.get(), column);
}

std::string CStatement::GetBytes(int column) const
{
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    const int count = sqlite3_column_bytes(m_statement.get(), column);
    return bytes == nullptr ? std::string() : std::string(bytes, static_cast<size_t>(count));
}

bool CStatement::IsNull(int column) const
{
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

int CStatement::GetColumnCount() const
{
    return sqlite3_column_count(m_statement.get());
}

std::string CStatement::GetColumnName(int column) const
{
    return sqlite3_column_name(m_statement.get(), column);
}
