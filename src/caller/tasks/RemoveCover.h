#pragma once

#include <nlohmann/json.hpp>

// Takes the cover out of the values of a film: the worker has written it to a temporary file, which its caller deletes. Nothing else is
// deleted, whatever the value says: a file counts only in the worker's own folder for temporary files.
void RemoveCover(nlohmann::json& values);
