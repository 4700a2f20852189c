#pragma once

#include "WorkFolder.h"
#include "core/property/ZVPropertyMap.h"
#include "core/string/ZVStringUTF8.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

// The document that explains the keys of the results.
namespace ResultKeys
{
// The keys in the tables of the document, or of one of its chapters, which is found by its heading.
inline std::set<std::string> GetDocumented(const std::string& heading = "")
{
    std::set<std::string> keys;
    std::istringstream document(WorkFolder::Read(ZV_RESULT_KEYS));
    bool isInChapter = heading.empty();
    for (std::string line; std::getline(document, line);)
    {
        if (line.starts_with("#") && !heading.empty())
            isInChapter = line.ends_with(" " + heading);
        if (!isInChapter || !line.starts_with("| ") || line.starts_with("| Key |"))
            continue;
        std::istringstream cell(line.substr(2, line.find(" |") - 2));
        for (std::string key; std::getline(cell >> std::ws, key, ',');)
            keys.insert(key);
    }
    return keys;
}

// Expects that a reader of a result finds all of its keys there.
inline void ExpectDocumented(const ZVPropertyMap& result)
{
    static const std::set<std::string> s_documented = GetDocumented();
    result.ForEach(
        [](const ZVString& key, const ZVString&)
        { EXPECT_TRUE(s_documented.contains(ZVStringUTF8(key).Get())) << ZVStringUTF8(key) << " is not in " ZV_RESULT_KEYS; });
}
}
