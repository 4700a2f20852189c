#pragma once

#include "caller/tasks/CFilmRunner.h"

#include <optional>

// Has a worker look at one film. Nothing comes back when the user interrupts it.
std::optional<CFindings> RunOne(const std::filesystem::path& film, CTaskSet tasks, const CWorkerSettings& settings,
                                const CPictureWish& wish = {});
