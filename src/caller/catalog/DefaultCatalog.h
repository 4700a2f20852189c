#pragma once

#include <filesystem>

// The catalog of the user, below the folder for data of programs. Throws std::runtime_error if there is no such folder.
std::filesystem::path GetDefaultCatalog();
