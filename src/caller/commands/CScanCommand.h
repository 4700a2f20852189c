#pragma once

#include "caller/commands/CCommand.h"
#include "caller/commands/CTaskOptions.h"
#include "caller/commands/CWorkerOptions.h"

#include <string>
#include <vector>

// `zivora scan`: brings the catalog of a library up to date.
class CScanCommand : public CCommand
{
public:
    const char* GetName() const override { return "scan"; }
    const char* GetPurpose() const override { return "Bring the catalog of a library up to date"; }
    const char* GetExample() const override { return "zivora scan ~/Videos"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    ExitStatus WritePlan();

    std::vector<std::string> m_folders;
    std::string m_catalog;
    std::string m_plan;
    int64_t m_shards = 0;
    CWorkerOptions m_worker;
    CTaskOptions m_tasks;
    bool m_triesAgain = false;
    bool m_isJSON = false;
};
