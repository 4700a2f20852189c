#include "siblings/reader/internet/CHeaderText.h"

#include <algorithm>
#include <charconv>
#include <strings.h>

namespace
{
bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

// RFC 9110, 5.6.2.
bool IsTokenCharacter(char character)
{
    return IsDigit(character) || (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           std::string_view("!#$%&'*+-.^_`|~").find(character) != std::string_view::npos;
}
}

bool CHeaderText::IsEqual(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

std::string_view CHeaderText::Trim(std::string_view text)
{
    constexpr char blanks[] = " \t";
    const size_t start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? std::string_view() : text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

bool CHeaderText::Split(std::string_view line, std::string_view& name, std::string_view& value)
{
    const size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0)
        return false;
    name = line.substr(0, colon);
    value = Trim(line.substr(colon + 1));
    return std::all_of(name.begin(), name.end(), IsTokenCharacter);
}

int64_t CHeaderText::ReadNumber(std::string_view text)
{
    int64_t number = -1;
    const char* const end = text.data() + text.size();
    const bool isNumber = !text.empty() && IsDigit(text.front());
    const std::from_chars_result result = std::from_chars(text.data(), end, number);
    return isNumber && result.ec == std::errc() && result.ptr == end ? number : -1;
}
