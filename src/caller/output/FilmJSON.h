#pragma once

#include "caller/film/CFilm.h"

#include <string>

// A film as one line of JSON: its values by the keys of the results, and "path"; of a name that is no UTF-8 also "path bytes", in which
// each byte that cannot stand for itself is \xHH. An error stands as "error" beside what is known. The line has no end.
std::string MakeFilmJSON(const CFilm& film, const std::string& error = {});
