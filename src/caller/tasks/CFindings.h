#pragma once

#include "caller/film/CFilm.h"
#include "caller/tasks/CTaskSet.h"

#include <map>
#include <string>

// What workers found out about a film.
struct CFindings
{
    CFilm Film;
    CTaskSet Done;                              // failed ones too, but not those that a worker did not begin
    std::map<std::string, std::string> Errors;  // why tasks failed, by their names
    std::string Picture = {};                   // a file of a picture, as bytes; empty if there is none

    // Why not everything could be found out, in one line; empty if nothing failed.
    std::string GetError() const;
};
