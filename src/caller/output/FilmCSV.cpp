#include "caller/output/FilmCSV.h"

namespace
{
std::string Quote(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char letter : text)
    {
        if (letter == '"')
            quoted += '"';
        quoted += letter;
    }
    return quoted + '"';
}
}

std::string MakeCSVHead(const std::vector<const FilmField*>& fields)
{
    std::string line;
    for (const FilmField* const field : fields)
        line += std::string(field->Name) + ",";
    return line + "path bytes,error\r\n";
}

std::string MakeCSVLine(const std::vector<const FilmField*>& fields, const CFilm& film, const std::string& error)
{
    std::string line;
    for (const FilmField* const field : fields)
        line += Quote(MakeFieldText(field->Get(film))) + ",";
    return line + Quote(EscapeBytes(film.Path)) + "," + Quote(error) + "\r\n";
}
