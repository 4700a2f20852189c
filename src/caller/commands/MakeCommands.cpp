#include "caller/commands/CCropCommand.h"
#include "caller/commands/CInfoCommand.h"
#include "caller/commands/CListCommand.h"
#include "caller/commands/CMergeCommand.h"
#include "caller/commands/CPictureCommand.h"
#include "caller/commands/CReportCommand.h"
#include "caller/commands/CScanCommand.h"
#include "caller/commands/CThumbCommand.h"
#include "caller/commands/CWorkCommand.h"

std::vector<std::unique_ptr<CCommand>> MakeCommands()
{
    std::vector<std::unique_ptr<CCommand>> commands;
    commands.push_back(std::make_unique<CInfoCommand>());
    commands.push_back(std::make_unique<CThumbCommand>());
    commands.push_back(std::make_unique<CCropCommand>());
    commands.push_back(std::make_unique<CScanCommand>());
    commands.push_back(std::make_unique<CListCommand>());
    commands.push_back(std::make_unique<CReportCommand>());
    commands.push_back(std::make_unique<CWorkCommand>());
    commands.push_back(std::make_unique<CMergeCommand>());
    commands.push_back(std::make_unique<CPictureCommand>());
    return commands;
}
