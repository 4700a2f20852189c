#include "caller/commands/CCommand.h"
#include "caller/output/Messages.h"
#include "caller/process/CSignals.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstring>
#include <iostream>

namespace
{
// What could not be printed counts as failed: a full disk behind a redirection, for one. A reader that has seen enough knows it.
ExitStatus FinishOutput(ExitStatus status)
{
    std::cout.flush();
    if (std::cout)
        return status;
    if (const int error = errno; error != EPIPE && !CSignals::IsInterrupted())
        SayError(std::string("not all of the output could be written: ") + strerror(error));
    return CSignals::IsInterrupted() ? Interrupted : status == AllDone ? SomeFailed : status;
}

std::string ExplainWrongUse(const CLI::App*, const CLI::Error& error)
{
    return std::string("zivora: ") + error.what() + "\nzivora: --help after a command tells what it takes\n";
}

// The library says of a command that it does not know that there is none.
void CheckCommand(const CLI::App& program, int count, char** arguments)
{
    const auto commands = program.get_subcommands([](const CLI::App*) { return true; });
    const std::string name = count > 1 ? arguments[1] : "";
    if (!name.empty() && !name.starts_with('-') &&
        std::ranges::none_of(commands, [&](const CLI::App* command) { return command->get_name() == name; }))
        throw CLI::ExtrasError("there is no command " + name, CLI::ExitCodes::ExtrasError);
}

ExitStatus RunCommand(const CLI::App& program, const std::vector<std::unique_ptr<CCommand>>& commands)
{
    for (const auto& command : commands)
        if (program.got_subcommand(command->GetName()))
            return command->Run();
    return WrongUse;
}
}

int main(int count, char** arguments)
{
    CSignals::Prepare();
    // Texts are UTF-8 whatever the user's language is, and numbers have full stops.
    setlocale(LC_CTYPE, "C.UTF-8");
    CLI::App program("Tells what films are, and looks after whole libraries of them.", "zivora");
    program.require_subcommand(1);
    program.set_help_all_flag("--help-all", "Print the help of all commands");
    program.set_version_flag("--version", "zivora " ZV_VERSION);
    program.failure_message(ExplainWrongUse);
    const std::vector<std::unique_ptr<CCommand>> commands = MakeCommands();
    for (const auto& command : commands)
    {
        CLI::App* const app = program.add_subcommand(command->GetName(), command->GetPurpose());
        command->AddOptions(*app);
        if (command->IsInternal())
            app->group("");
        app->footer(command->GetNotes() + "Example:  " + command->GetExample());
    }
    try
    {
        CheckCommand(program, count, arguments);
        program.parse(count, arguments);
        return FinishOutput(RunCommand(program, commands));
    }
    catch (const CLI::ParseError& error)
    {
        return program.exit(error) == 0 ? AllDone : WrongUse;
    }
    catch (const std::exception& error)
    {
        SayError(error.what());
        return SomeFailed;
    }
}
