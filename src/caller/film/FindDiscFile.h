#pragma once

#include <filesystem>
#include <string>

// The file by which the worker knows the disc in a folder, as a name below the folder. Empty if the folder is no disc.
std::string FindDiscFile(const std::filesystem::path& folder);
