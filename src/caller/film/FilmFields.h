#pragma once

#include "caller/film/CFilm.h"

#include <span>

// What a value of a field can be.
enum class FieldKind
{
    Text,
    Number,
    Words,  // an array of texts, each once
};

// A fact of a film under the short name by which lists, conditions and the report know it.
struct FilmField
{
    const char* Name;
    FieldKind Kind;
    const char* Meaning;  // for the help, with the unit
    // The value: a text, a number, or an array of texts; null if it is not known.
    nlohmann::json (*Get)(const CFilm& film);
};

// All of them, in the order in which they are shown.
std::span<const FilmField> GetFilmFields();

// The field of a name, in any case; nullptr if there is none.
const FilmField* FindFilmField(const std::string& name);

// Words as one text, in which each stands between two semicolons: ";a;b;". An entry of the worker's lists has none in it.
std::string JoinWords(const nlohmann::json& words);

// A value of a field as a text for lists: words are parted by semicolons, and what is not known is empty.
std::string MakeFieldText(const nlohmann::json& value);
