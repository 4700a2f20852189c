#pragma once

#include "caller/commands/CCommand.h"
#include "caller/commands/CWorkerOptions.h"
#include "caller/film/CFilm.h"

#include <string>

// `zivora crop`: the picture between the black bars of a film.
class CCropCommand : public CCommand
{
public:
    const char* GetName() const override { return "crop"; }
    const char* GetPurpose() const override { return "Find the picture between the black bars of a film"; }
    const char* GetExample() const override { return "zivora crop film.mkv"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    std::string m_film;
    CWorkerOptions m_worker;
    bool m_isJSON = false;
};
