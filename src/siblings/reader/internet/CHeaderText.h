#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The words that the header lines of HTTP are made of (RFC 9110).
namespace CHeaderText
{
// True when two texts are the same except for the case of ASCII letters.
bool IsEqual(std::string_view left, std::string_view right);
// The text without blanks and tabs at both ends.
std::string_view Trim(std::string_view text);
// Splits "name: value"; the value is trimmed. False for a text without a valid name before a ":".
bool Split(std::string_view line, std::string_view& name, std::string_view& value);
// Reads a number that consists of digits alone; -1 for anything else and for a number of more than 63 bits.
int64_t ReadNumber(std::string_view text);
}
