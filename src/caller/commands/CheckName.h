#pragma once

#include <string>

// For options: what is wrong with the name of a file, or an empty text. A name that is empty is no file, though systems take it for the
// working folder in places.
inline std::string CheckName(const std::string& name)
{
    return name.empty() ? "the name is empty" : "";
}
