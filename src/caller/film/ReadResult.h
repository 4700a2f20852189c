#pragma once

#include "caller/film/CFilm.h"

#include <filesystem>

// Adds the values of a result file to those of a film; those that it has already give way. False if the file is not there or is no
// result.
bool ReadResult(const std::filesystem::path& file, CFilm& film);
