#pragma once

#include "caller/commands/CCommand.h"
#include "caller/film/FilmFields.h"
#include "caller/list/CFilmRows.h"

#include <string>
#include <vector>

// `zivora list`: the films of a catalog.
class CListCommand : public CCommand
{
public:
    const char* GetName() const override { return "list"; }
    const char* GetPurpose() const override { return "List films of a catalog"; }
    const char* GetExample() const override { return "zivora list --where 'hdr=DolbyVision and width>=3840'"; }
    std::string GetNotes() const override;
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    std::vector<const FilmField*> GetFields() const;
    void PrintTable(const CCatalog& catalog, const CFilmQuery& query) const;
    void PrintLines(const CCatalog& catalog, const CFilmQuery& query) const;

    std::string m_catalog;
    std::string m_where;
    std::string m_sort;
    std::vector<std::string> m_columns;
    bool m_hasVanished = false;
    bool m_isCSV = false;
    bool m_isJSON = false;
    bool m_isTable = false;
};
