#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>

// Adds the values of a result file to an object of values by their keys; those that it has already give way. A number is a number, a list an
// array; an empty number, and a list without an entry, are null and an empty array. False if the file is not there or is no result.
bool ReadResult(const std::filesystem::path& file, nlohmann::json& values);
