#pragma once

#include "caller/film/CFilm.h"

#include <string>

// What a film is as lines for people, the first of which is its name: length, container, picture, sound and subtitles by stream, and
// what it is called. Control characters of its texts are shown as blanks, so that a film cannot talk to the terminal.
std::string MakeFilmBlock(const CFilm& film);
