#pragma once

#include "caller/film/ReadBlackBars.h"

#include <string>

// Whether the worker is sure enough of the picture between the black bars that the rest may be cut off.
bool IsSureCrop(const CFilm& film);

// A rectangle as ffmpeg's filter takes it: "crop=1920:816:0:132".
std::string MakeCropFilter(const CCrop& crop);

// What is known of the black bars of a film, in lines for people. When something can be cut off, the first line is the filter for ffmpeg
// and the second the option for mpv; otherwise the first begins with "do not crop".
std::string MakeCropText(const CFilm& film);
