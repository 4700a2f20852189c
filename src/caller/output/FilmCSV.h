#pragma once

#include "caller/film/CFilm.h"
#include "caller/film/FilmFields.h"

#include <string>
#include <vector>

// The first line of a table of comma-separated values (RFC 4180): the names of the fields, "path bytes" and "error".
std::string MakeCSVHead(const std::vector<const FilmField*>& fields);

// A film as a line of it. Words are parted by semicolons. Lines end with CR and LF.
std::string MakeCSVLine(const std::vector<const FilmField*>& fields, const CFilm& film, const std::string& error);
