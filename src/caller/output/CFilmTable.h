#pragma once

#include "caller/film/FilmFields.h"

#include <string>
#include <vector>

// A table for people: a line for each film, in columns of the same width. A column is as wide as its widest value, up to a limit, after which
// a value is cut. So every film is measured before the first line is made, and none is kept.
class CFilmTable
{
public:
    explicit CFilmTable(const std::vector<const FilmField*>& fields);

    void Measure(const CFilm& film, const std::string& error);
    // Lines with their ends: the names of the fields, and a film.
    std::string MakeHead() const;
    std::string MakeLine(const CFilm& film, const std::string& error) const;

private:
    using Cells = std::vector<std::string>;

    Cells MakeHeadCells() const;
    Cells MakeCells(const CFilm& film, const std::string& error) const;
    void Widen(const Cells& cells);
    std::string Join(const Cells& cells) const;

    std::vector<const FilmField*> m_fields;
    std::vector<size_t> m_widths;  // in columns of a terminal
};
