#include "caller/list/FilmColumn.h"

#include <cstring>
#include <strings.h>

namespace
{
// What is no field of a film, or stands in the catalog in another form.
struct OtherColumn
{
    const char* Name;
    const char* SQL;
};

constexpr OtherColumn OtherColumns[] = {
    {"path",  "CAST(path AS TEXT)"},
    {"error", "error"             },
};
}

std::optional<FilmColumn> FindFilmColumn(const std::string& name)
{
    for (const OtherColumn& column : OtherColumns)
        if (strcasecmp(column.Name, name.c_str()) == 0)
            return FilmColumn {column.SQL, FieldKind::Text};
    const FilmField* const field = FindFilmField(name);
    if (field == nullptr)
        return std::nullopt;
    // Its names are not in the order of the sizes that they mean.
    const bool isResolution = strcmp(field->Name, "resolution") == 0;
    return FilmColumn {field->Name, field->Kind, isResolution ? "width * height" : ""};
}
