#pragma once

#include "caller/commands/CCommand.h"
#include "caller/commands/CWorkerOptions.h"
#include "caller/tasks/CFindings.h"

#include <string>
#include <vector>

// `zivora info`: what films are, in the order in which they are named.
class CInfoCommand : public CCommand
{
public:
    const char* GetName() const override { return "info"; }
    const char* GetPurpose() const override { return "Tell what films are"; }
    const char* GetExample() const override { return "zivora info film.mkv"; }
    void AddOptions(CLI::App& app) override;
    ExitStatus Run() override;

private:
    void Show(const CFindings& findings) const;

    std::vector<std::string> m_films;
    CWorkerOptions m_worker;
    bool m_isJSON = false;
};
