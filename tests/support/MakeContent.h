#pragma once

#include <string>

// A text in which every place is different from the others.
inline std::string MakeContent(size_t size)
{
    std::string content;
    for (size_t number = 0; content.size() < size; ++number)
        content += std::to_string(number) + ",";
    content.resize(size);
    return content;
}
