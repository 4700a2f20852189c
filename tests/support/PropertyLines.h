#pragma once

#include "core/property/ZVPropertyMap.h"

#include <set>
#include <sstream>
#include <string>

// The entries of a map as "name=value" in UTF-8, whatever their order.
inline std::set<std::string> GetLines(const ZVPropertyMap& properties)
{
    std::set<std::string> lines;
    properties.ForEach(
        [&lines](const ZVString& name, const ZVString& value)
        {
            char* const line = ZVFormat(L"%s=%s", name, value).GetUTF8();
            lines.insert(line);
            delete[] line;
        });
    return lines;
}

// The same of a text in which each entry stands on a line of its own.
inline std::set<std::string> GetLines(const std::string& text)
{
    std::set<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.insert(line);
    return lines;
}
