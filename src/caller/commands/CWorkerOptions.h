#pragma once

#include "caller/tasks/CWorkerSettings.h"

#include <CLI/CLI.hpp>

// The options of all commands that start workers.
class CWorkerOptions
{
public:
    enum class Jobs
    {
        One,
        Several,  // with an option that says how many
    };

    void AddTo(CLI::App& app, Jobs jobs);
    // What they say. Throws std::runtime_error if the program is none that can be started.
    CWorkerSettings GetSettings() const;

private:
    CWorkerSettings m_settings;
    uint64_t m_memory = 0;   // in bytes; 0 for that of the settings
    double m_timeLimit = 0;  // in seconds; 0 for those of the settings
};
