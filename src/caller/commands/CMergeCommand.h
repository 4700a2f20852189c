#pragma once

#include "caller/commands/CCommand.h"

#include <string>

// `zivora merge`: brings the results of a plan into a catalog.
class CMergeCommand : public CCommand
{
public:
    const char* GetName() const override { return "merge"; }
    const char* GetPurpose() const override { return "Bring the results of a plan into a catalog"; }
    const char* GetExample() const override { return "zivora merge plan --to films.db"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    std::string m_plan;
    std::string m_catalog;
    bool m_isJSON = false;
};
