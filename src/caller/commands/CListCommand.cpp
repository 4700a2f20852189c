#include "caller/commands/CListCommand.h"

#include "caller/catalog/DefaultCatalog.h"
#include "caller/commands/CheckName.h"
#include "caller/list/FilmColumn.h"
#include "caller/output/CFilmTable.h"
#include "caller/output/FilmCSV.h"
#include "caller/output/FilmJSON.h"
#include "caller/process/CSignals.h"

#include <iostream>

namespace
{
// What people want to see of their films first.
const std::vector<std::string> TableColumns = {"file",     "resolution", "codec",    "hdr", "audio",
                                               "channels", "language",   "duration", "size"};

std::string CheckCondition(const std::string& text)
{
    try
    {
        CFilter {text};
        return {};
    }
    catch (const std::runtime_error& error)
    {
        return error.what();
    }
}

std::string CheckField(const std::string& name)
{
    return FindFilmField(name) != nullptr ? "" : "there is no field \"" + name + "\"";
}

std::string CheckSort(const std::string& name)
{
    return FindFilmColumn(name.starts_with('-') ? name.substr(1) : name) ? "" : "there is no field \"" + name + "\"";
}
}

std::string CListCommand::GetNotes() const
{
    constexpr size_t NameWidth = 14;
    std::string text = "Fields:\n";
    for (const FilmField& field : GetFilmFields())
    {
        std::string line = std::string("  ") + field.Name;
        line.resize(std::max(line.size() + 1, NameWidth), ' ');
        text += line + field.Meaning + "\n";
    }
    return text + "  error       why something of it could not be found out\n\n"
                  "Conditions:\n"
                  "  = != < <= > >=, ~ for a part of a text, and, or, not, parentheses. A field alone: it is known.\n"
                  "  Between double quotes a key of the worker's results: \"Video Scan\"=Interlaced\n"
                  "  Numbers can have a unit (size>4G) or be times (duration>1:30:00).\n\n";
}

void CListCommand::AddOptions(CLI::App& app)
{
    app.add_option("CATALOG", m_catalog, "The catalog; by default the user's own")->check(CheckName);
    app.add_option("--where", m_where, "Only films that fulfill it")->check(CheckCondition)->type_name("CONDITION");
    app.add_option("--sort", m_sort, "A field to sort by, with - before it for the largest first; by default the path")
        ->check(CheckSort)
        ->type_name("FIELD");
    CLI::Option* const columns = app.add_option("--columns", m_columns, "Fields that are shown, parted by commas");
    columns->delimiter(',')->allow_extra_args(false)->check(CheckField)->type_name("FIELDS");
    app.add_flag("--vanished", m_hasVanished, "Films that are not there any more, too");
    CLI::Option* const table = app.add_flag("--table", m_isTable, "A table for people, as without an option");
    CLI::Option* const csv = app.add_flag("--csv", m_isCSV, "Comma-separated values (RFC 4180)")->excludes(table);
    app.add_flag("--json", m_isJSON, "One object a line, with the keys of the worker's results")
        ->excludes(table)
        ->excludes(csv)
        ->excludes(columns);
}

ExitStatus CListCommand::Run()
{
    const CCatalog catalog(m_catalog.empty() ? GetDefaultCatalog() : std::filesystem::path(m_catalog), CCatalog::Access::Read);
    const CFilmQuery query {m_where.empty() ? CFilter() : CFilter(m_where), m_sort, m_hasVanished};
    if (m_isCSV || m_isJSON)
        PrintLines(catalog, query);
    else
        PrintTable(catalog, query);
    return CSignals::IsInterrupted() ? Interrupted : AllDone;
}

std::vector<const FilmField*> CListCommand::GetFields() const
{
    std::vector<const FilmField*> fields;
    const bool isAll = m_columns.empty() && m_isCSV;
    for (const FilmField& field : GetFilmFields())
        if (isAll)
            fields.push_back(&field);
    if (!isAll)
        for (const std::string& name : m_columns.empty() ? TableColumns : m_columns)
            fields.push_back(FindFilmField(name));
    return fields;
}

void CListCommand::PrintTable(const CCatalog& catalog, const CFilmQuery& query) const
{
    CFilmTable table(GetFields());
    CFilm film;
    std::string error;
    for (CFilmRows rows(catalog, query); rows.GetNext(film, error);)
        table.Measure(film, error);
    std::cout << table.MakeHead();
    for (CFilmRows rows(catalog, query); !CSignals::IsInterrupted() && std::cout && rows.GetNext(film, error);)
        std::cout << table.MakeLine(film, error);
}

void CListCommand::PrintLines(const CCatalog& catalog, const CFilmQuery& query) const
{
    const std::vector<const FilmField*> fields = GetFields();
    if (m_isCSV)
        std::cout << MakeCSVHead(fields);
    CFilm film;
    std::string error;
    for (CFilmRows rows(catalog, query); !CSignals::IsInterrupted() && std::cout && rows.GetNext(film, error);)
    {
        if (m_isCSV)
            std::cout << MakeCSVLine(fields, film, error);
        else
            std::cout << MakeFilmJSON(film, error) << '\n';
    }
}
