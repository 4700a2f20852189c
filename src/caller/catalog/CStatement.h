#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>

// Throws std::runtime_error with the name of the database and what it said last.
[[noreturn]] void FailOfDatabase(sqlite3* database);

// A prepared statement of an open database, which must outlive it. What the database refuses is thrown as std::runtime_error.
class CStatement
{
public:
    CStatement(sqlite3* database, const std::string& text);

    // Values of the parameters, which count from 1. Bytes are no text: they can be anything.
    CStatement& Bind(int parameter, int64_t value);
    CStatement& Bind(int parameter, double value);
    CStatement& BindText(int parameter, const std::string& text);
    CStatement& BindBytes(int parameter, const std::string& bytes);
    CStatement& BindNull(int parameter);

    // Goes to the next row. False when there is none; then the statement can be used again.
    bool Step();
    // For a statement without rows.
    void Run() { Step(); }

    // Of the row, by columns from 0.
    int64_t GetNumber(int column) const;
    double GetReal(int column) const;
    std::string GetBytes(int column) const;
    bool IsNull(int column) const;
    int GetColumnCount() const;
    std::string GetColumnName(int column) const;

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    void Check(int result) const;

    sqlite3* m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};
