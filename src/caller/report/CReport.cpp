#include "caller/report/CReport.h"

#include "caller/files/Base64.h"
#include "caller/film/FilmFields.h"
#include "caller/process/CSignals.h"
#include "caller/report/PageTemplate.h"

#include <ctime>
#include <string_view>
#include <vector>

namespace
{
using nlohmann::json;

constexpr char FilmsQuery[] = R"(
    SELECT path, facts, error, (SELECT picture FROM pictures WHERE film = films.id) FROM films WHERE vanished = 0 ORDER BY path)";

enum FilmsColumn
{
    PathColumn,
    FactsColumn,
    ErrorColumn,
    PictureColumn,
};

// So many films are held until they are written: enough that their texts are worth sharing.
constexpr size_t FilmsInBlock = 256;

constexpr std::string_view EndOfElement = "</script>\n";

// JSON that can stand in an element: without "<" nothing in it ends the element or begins a comment.
std::string MakeElementText(const json& value)
{
    const std::string plain = value.dump(-1, ' ', false, json::error_handler_t::replace);
    std::string text;
    text.reserve(plain.size());
    for (const char letter : plain)
        if (letter == '<')
            text += "\\u003c";
        else
            text += letter;
    return text;
}

const char* GetKindName(FieldKind kind)
{
    return kind == FieldKind::Number ? "number" : kind == FieldKind::Words ? "words" : "text";
}
}

CReport::CReport(const CCatalog& catalog, CPageFile& page) : m_catalog(catalog), m_page(page) {}

std::optional<CReportCounts> CReport::Write()
{
    m_page.Write(GetPageTemplate().Start);
    WriteAbout();
    CStatement row(m_catalog.GetDatabase(), FilmsQuery);
    while (row.Step())
    {
        if (CSignals::IsInterrupted())
            return std::nullopt;
        AddFilm(row);
        if (m_films.size() == FilmsInBlock)
            EndBlock();
    }
    EndBlock();
    m_page.Write(GetPageTemplate().End);
    return m_counts;
}

// What the page cannot know by itself: what the values of a film are, and when they were true, in seconds since 1970.
void CReport::WriteAbout()
{
    json fields = json::array();
    for (const FilmField& field : GetFilmFields())
        fields.push_back({
            {"name",    field.Name             },
            {"kind",    GetKindName(field.Kind)},
            {"meaning", field.Meaning          }
        });
    m_page.Write("<script type=\"application/json\" id=\"about\">");
    m_page.Write(MakeElementText({
        {"fields", fields       },
        {"made",   time(nullptr)}
    }));
    m_page.Write(EndOfElement);
}

void CReport::AddFilm(const CStatement& row)
{
    CFilm film {.Path = row.GetBytes(PathColumn)};
    // A row that somebody else has damaged is a film of which only the name is known.
    if (json facts = json::parse(row.GetBytes(FactsColumn), nullptr, false); facts.is_object())
        film.Values = std::move(facts);
    json values = json::array();
    for (const FilmField& field : GetFilmFields())
        values.push_back(AddTexts(field.Get(film)));
    values.push_back(row.IsNull(ErrorColumn) ? json() : AddTexts(ToUTF8(row.GetBytes(ErrorColumn))));
    values.push_back(AddPicture(row.GetBytes(PictureColumn)));
    m_films.push_back(std::move(values));
    ++m_counts.Films;
    m_counts.Failed += row.IsNull(ErrorColumn) ? 0 : 1;
}

// A value with numbers instead of texts.
json CReport::AddTexts(const json& value)
{
    if (value.is_string())
        return m_texts.emplace(value.get<std::string>(), m_texts.size()).first->second;
    if (!value.is_array())
        return value;
    json numbers = json::array();
    for (const json& entry : value)
        numbers.push_back(AddTexts(entry));
    return numbers;
}

// The line of a picture in the element of its block, or null.
json CReport::AddPicture(const std::string& picture)
{
    if (picture.empty())
        return {};
    m_page.Write(m_pictureCount == 0 ? "<script type=\"text/plain\" class=\"pictures\">" : "\n");
    m_page.Write(EncodeBase64(picture));
    return m_pictureCount++;
}

void CReport::EndBlock()
{
    if (m_pictureCount > 0)
        m_page.Write(EndOfElement);
    if (!m_films.empty())
    {
        std::vector<std::string> texts(m_texts.size());
        for (const auto& [text, number] : m_texts)
            texts[number] = text;
        m_page.Write("<script type=\"application/json\" class=\"films\">");
        m_page.Write(MakeElementText({
            {"texts", texts  },
            {"films", m_films}
        }));
        m_page.Write(EndOfElement);
    }
    m_texts.clear();
    m_films.clear();
    m_pictureCount = 0;
}
