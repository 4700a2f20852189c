#pragma once

#include "caller/commands/CCommand.h"

#include <string>

// `zivora report`: a page with all films of a catalog.
class CReportCommand : public CCommand
{
public:
    const char* GetName() const override { return "report"; }
    const char* GetPurpose() const override { return "Write a page with all films of a catalog"; }
    const char* GetExample() const override { return "zivora report films.html"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    std::string m_catalog;
    std::string m_page;
    bool m_isJSON = false;
};
