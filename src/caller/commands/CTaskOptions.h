#pragma once

#include "caller/tasks/CTaskSet.h"

#include <CLI/CLI.hpp>

// The options that choose what is found out about each film of a library.
class CTaskOptions
{
public:
    void AddTo(CLI::App& app);
    // The tasks that were chosen, to which the basic one always belongs; all but the black bars, which take long, when none was.
    // Throws std::runtime_error if the library for pictures is not there.
    CTaskSet GetTasks() const;

private:
    bool m_isBasic = false;
    bool m_isBars = false;
    bool m_isPicture = false;
};
