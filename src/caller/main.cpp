#include "caller/commands/CInfoCommand.h"
#include "caller/commands/CReportCommand.h"
#include "caller/commands/CScanCommand.h"
#include "caller/commands/CSignals.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <thread>

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
    CScanCommand scan;
    scan.Options.Jobs = std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
    CLI::App* const scanCommand = program.add_subcommand("scan", "Brings the catalog of a library up to date");
    scanCommand->add_option("FOLDER", scan.Folders, "Folders with films")->required();
    scanCommand->add_option("--to", scan.Catalog, "The catalog; by default the user's own");
    scanCommand->add_option("--jobs", scan.Options.Jobs, "How many workers at a time")->check(CLI::Range(1, 256));
    scanCommand->add_flag("--thumbs", scan.Options.WithPictures, "With a picture of each film");
    scanCommand->add_flag("--bars", scan.Options.WithBars, "With the black bars of each film");
    scanCommand->add_option("--worker", options.Worker, "The worker's program");
    scanCommand->footer("Example:  zivora scan ~/Videos --thumbs");
    scanCommand->callback([&] { status = scan.Run(options); });
    CReportCommand report;
    CLI::App* const reportCommand = program.add_subcommand("report", "Writes a page with all films of a catalog");
    reportCommand->add_option("CATALOG", report.Catalog, "The catalog; by default the user's own");
    reportCommand->add_option("PAGE", report.Page, "The page; by default films.html in this folder, - for standard output");
    reportCommand->add_flag("--json", report.AsJSON, "Tells the name of the page and how many films are in it as an object");
    reportCommand->footer("Example:  zivora report && xdg-open films.html");
    reportCommand->callback([&] { status = report.Run(); });
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
