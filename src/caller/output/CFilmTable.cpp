#include "caller/output/CFilmTable.h"

#include "caller/output/Messages.h"
#include "caller/output/Units.h"

#include <algorithm>
#include <cwchar>

namespace
{
// So many columns of a terminal, so that a long title leaves room for the rest.
constexpr size_t MaximumWidth = 60;

// What a field shows in a table, when it is not what it is in files.
struct TableForm
{
    std::string_view Field;
    std::string (*Make)(double value);
};

constexpr TableForm TableForms[] = {
    {"size",     MakeSize  },
    {"duration", MakeLength},
};

std::string MakeCell(const FilmField& field, const CFilm& film)
{
    const nlohmann::json value = field.Get(film);
    const auto* const form =
        std::ranges::find_if(TableForms, [&](const TableForm& row) { return row.Field == field.Name && value.is_number(); });
    return form == std::end(TableForms) ? MakePlain(MakeFieldText(value)) : form->Make(value.get<double>());
}

// The columns of a terminal that a character takes, and how many bytes it has.
struct Character
{
    size_t Bytes = 1;
    size_t Width = 1;
};

Character Measure(const std::string& text, size_t place)
{
    wchar_t letter = 0;
    mbstate_t state {};
    const size_t bytes = mbrtowc(&letter, text.data() + place, text.size() - place, &state);
    if (bytes == 0 || bytes > text.size())
        return {};
    return {bytes, static_cast<size_t>(std::max(wcwidth(letter), 0))};
}

size_t GetWidth(const std::string& text)
{
    size_t width = 0;
    for (size_t place = 0; place < text.size();)
    {
        const Character character = Measure(text, place);
        place += character.Bytes;
        width += character.Width;
    }
    return width;
}

// Cuts a text that is too wide, and says so with three dots.
std::string Fit(const std::string& text)
{
    constexpr std::string_view Dots = "...";
    if (GetWidth(text) <= MaximumWidth)
        return text;
    size_t place = 0;
    for (size_t width = 0; place < text.size();)
    {
        const Character character = Measure(text, place);
        width += character.Width;
        if (width > MaximumWidth - Dots.size())
            break;
        place += character.Bytes;
    }
    return text.substr(0, place) + std::string(Dots);
}
}

CFilmTable::CFilmTable(const std::vector<const FilmField*>& fields) : m_fields(fields), m_widths(fields.size() + 1)
{
    Widen(MakeHeadCells());
}

void CFilmTable::Measure(const CFilm& film, const std::string& error)
{
    Widen(MakeCells(film, error));
}

std::string CFilmTable::MakeHead() const
{
    return Join(MakeHeadCells());
}

std::string CFilmTable::MakeLine(const CFilm& film, const std::string& error) const
{
    return Join(MakeCells(film, error));
}

CFilmTable::Cells CFilmTable::MakeHeadCells() const
{
    Cells cells;
    for (const FilmField* const field : m_fields)
        cells.emplace_back(field->Name);
    return cells;
}

CFilmTable::Cells CFilmTable::MakeCells(const CFilm& film, const std::string& error) const
{
    Cells cells;
    for (const FilmField* const field : m_fields)
        cells.push_back(Fit(MakeCell(*field, film)));
    if (!error.empty())
        cells.push_back("failed: " + MakePlain(error));
    return cells;
}

void CFilmTable::Widen(const Cells& cells)
{
    for (size_t column = 0; column < cells.size(); ++column)
        m_widths[column] = std::max(m_widths[column], GetWidth(cells[column]));
}

// A film that changed after it was measured may be wider than its column.
std::string CFilmTable::Join(const Cells& cells) const
{
    std::string line;
    for (size_t column = 0; column < cells.size(); ++column)
    {
        const size_t width = GetWidth(cells[column]);
        const std::string blanks(std::max(m_widths[column], width) - width, ' ');
        const bool isNumber = column < m_fields.size() && m_fields[column]->Kind == FieldKind::Number;
        line += (isNumber ? blanks + cells[column] : cells[column] + blanks) + "  ";
    }
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}
