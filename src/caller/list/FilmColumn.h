#pragma once

#include "caller/film/FilmFields.h"

#include <optional>
#include <string>

// A column of a catalog by which films can be chosen and sorted.
struct FilmColumn
{
    std::string SQL;
    FieldKind Kind = FieldKind::Text;
    std::string Order = {};  // by what is sorted; empty for the column itself
};

// That of a field, or of "error", in any case. Nothing if there is none.
std::optional<FilmColumn> FindFilmColumn(const std::string& name);
