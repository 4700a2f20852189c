#include "caller/output/FilmJSON.h"

std::string MakeFilmJSON(const CFilm& film, const std::string& error)
{
    nlohmann::json line = film.Values;
    line["path"] = ToUTF8(film.Path);
    if (const std::string escaped = EscapeBytes(film.Path); !escaped.empty())
        line["path bytes"] = escaped;
    if (!error.empty())
        line["error"] = ToUTF8(error);
    return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}
