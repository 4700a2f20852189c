#pragma once

#include <string_view>

// The page around its films, which is built into the program. The elements with the films stand between its two parts.
struct PageTemplate
{
    std::string_view Start;
    std::string_view End;
};

PageTemplate GetPageTemplate();

// By this, which stands in the first part, a page is known as one of ours.
constexpr std::string_view PageMark = "<meta name=\"generator\" content=\"zivora report\">";
