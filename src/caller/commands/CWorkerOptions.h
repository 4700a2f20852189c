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
    // What they say.
    CWorkerSettings GetSettings() const;

private:
    CWorkerSettings m_settings;
    double m_timeLimit = 0;  // in seconds; 0 for those of the settings
};
