#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

// How all commands of the program end.
enum ExitStatus
{
    AllDone = 0,
    SomeFailed = 1,
    WrongUse = 2,
    Interrupted = 130,
};

// A command of the command line.
class CCommand
{
public:
    virtual ~CCommand() = default;

    virtual const char* GetName() const = 0;
    virtual const char* GetPurpose() const = 0;
    // A line that can be typed as it stands.
    virtual const char* GetExample() const = 0;
    // What else its help tells, as whole lines.
    virtual std::string GetNotes() const { return {}; }
    // Whether only the program itself uses it.
    virtual bool IsInternal() const { return false; }
    // Says what the command takes; the values come into this object.
    virtual void AddOptions(CLI::App& app) = 0;
    // Does it. What stops it is thrown as std::exception with a sentence for the user; CLI::ValidationError is for wrong use.
    virtual ExitStatus Run() = 0;
};

// All of them, in the order in which the help lists them.
std::vector<std::unique_ptr<CCommand>> MakeCommands();
