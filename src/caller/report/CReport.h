#pragma once

#include "caller/catalog/CCatalog.h"
#include "caller/report/CPageFile.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

// What a page shows.
struct CReportCounts
{
    int64_t Films = 0;
    int64_t Failed = 0;  // of them
};

// Writes all films of a catalog that have not vanished into a page, in the order of their paths, and holds only some of them at a time.
//
// They stand in blocks, in elements that are no scripts. A block is an object: "texts" are its texts, each once, and "films" an array for
// each film: its fields in the order of GetFilmFields, the reason why it failed, and the line of its picture. Texts are there as numbers
// of "texts", and what is not known is null. The pictures of a block, as base64, are the lines of an element of their own before it.
class CReport
{
public:
    CReport(const CCatalog& catalog, CPageFile& page);

    // Returns nothing when the user has interrupted it.
    std::optional<CReportCounts> Write();

private:
    void WriteAbout();
    void AddFilm(const CStatement& row);
    nlohmann::json AddTexts(const nlohmann::json& value);
    nlohmann::json AddPicture(const std::string& picture);
    void EndBlock();

    const CCatalog& m_catalog;
    CPageFile& m_page;
    CReportCounts m_counts;
    std::map<std::string, size_t> m_texts;  // of the block, with their numbers
    nlohmann::json m_films = nlohmann::json::array();
    int64_t m_pictureCount = 0;
};
