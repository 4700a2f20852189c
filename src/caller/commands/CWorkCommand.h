#pragma once

#include "caller/commands/CCommand.h"
#include "caller/commands/CWorkerOptions.h"

#include <string>

// `zivora work`: one shard of a plan.
class CWorkCommand : public CCommand
{
public:
    const char* GetName() const override { return "work"; }
    const char* GetPurpose() const override { return "Look at the films of one shard of a plan"; }
    const char* GetExample() const override { return "zivora work plan 3"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    std::string m_plan;
    int64_t m_shard = 0;
    CWorkerOptions m_worker;
    bool m_isJSON = false;
};
