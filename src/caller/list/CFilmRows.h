#pragma once

#include "caller/catalog/CCatalog.h"
#include "caller/list/CFilter.h"

#include <string>

// What is listed of a catalog.
struct CFilmQuery
{
    CFilter Filter;
    std::string Sort;          // a field; descending when it begins with "-"; by the path when it is empty
    bool HasVanished = false;  // films that vanished, too
};

// The films of a catalog, one after the other. The catalog must outlive this.
class CFilmRows
{
public:
    // Throws std::runtime_error if there is no such field.
    CFilmRows(const CCatalog& catalog, const CFilmQuery& query);

    // Sets the next film and why its tasks failed. False when there is none any more.
    bool GetNext(CFilm& film, std::string& error);

private:
    CStatement m_statement;
};
