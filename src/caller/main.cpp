#include "caller/commands/CInfoCommand.h"
#include "caller/commands/CSignals.h"

#include <CLI/CLI.hpp>
#include <iostream>

int main(int count, char** arguments)
{
    CSignals::Prepare();
    CCallerOptions options {.Worker = FindWorker()};
    CLI::App program("Tells what films are, for people and scripts, and looks after whole libraries of them.", "zivora");
    program.require_subcommand(1);
    ExitStatus status = AllDone;
    CInfoCommand info;
    CLI::App* const infoCommand = program.add_subcommand("info", "What films are, as readable blocks or as JSON");
    infoCommand->add_option("FILE", info.Films, "Films, sound files, or the folders of discs")->required();
    infoCommand->add_flag("--json", options.AsJSON, "One object a line, with the keys of the worker's results");
    infoCommand->add_option("--worker", options.Worker, "The worker's program");
    infoCommand->footer("Example:  zivora info film.mkv --json | jq '.\"HDR Format\"'");
    infoCommand->callback([&] { status = info.Run(options); });
    try
    {
        program.parse(count, arguments);
    }
    catch (const CLI::ParseError& error)
    {
        return program.exit(error) == 0 ? AllDone : WrongUse;
    }
    catch (const std::exception& error)
    {
        std::cerr << "zivora: " << error.what() << '\n';
        return SomeFailed;
    }
    return status;
}
