#include "caller/list/CFilmRows.h"

#include "caller/list/FilmColumn.h"

#include <stdexcept>

namespace
{
std::string MakeOrder(const std::string& sort)
{
    const bool isDescending = sort.starts_with('-');
    const std::string name = sort.substr(isDescending ? 1 : 0);
    if (name.empty())
        return "path";
    const std::optional<FilmColumn> column = FindFilmColumn(name);
    if (!column)
        throw std::runtime_error("there is no field \"" + name + "\" to sort by");
    // What is not known comes last in both directions.
    return (column->Order.empty() ? column->SQL : column->Order) + (isDescending ? " COLLATE NOCASE DESC" : " COLLATE NOCASE") +
           " NULLS LAST, path";
}

std::string MakeQuery(const CFilmQuery& query)
{
    return "SELECT path, facts, error, vanished FROM films WHERE " + query.Filter.GetSQL() +
           (query.HasVanished ? "" : " AND vanished = 0") + " ORDER BY " + MakeOrder(query.Sort);
}
}

CFilmRows::CFilmRows(const CCatalog& catalog, const CFilmQuery& query) : m_statement(catalog.GetDatabase(), MakeQuery(query))
{
    int parameter = 1;
    for (const nlohmann::json& value : query.Filter.GetValues())
    {
        if (value.is_number())
            m_statement.Bind(parameter++, value.get<double>());
        else
            m_statement.BindText(parameter++, value.get<std::string>());
    }
}

bool CFilmRows::GetNext(CFilm& film, std::string& error)
{
    if (!m_statement.Step())
        return false;
    film.Path = m_statement.GetBytes(0);
    film.Values = nlohmann::json::parse(m_statement.GetBytes(1));
    error = m_statement.GetBytes(2);
    if (m_statement.GetNumber(3) != 0)
        film.Values["vanished"] = true;
    return true;
}
