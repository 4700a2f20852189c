#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The words that the header lines of HTTP are made of (RFC 9110).
namespace CHeaderText
{
// True for two texts that differ at most in the case of ASCII letters.
bool IsEqual(std::string_view left, std::string_view right);
// Without blanks and tabs at both ends.
std::string_view Trim(std::string_view text);
// Splits "name: value"; the value is trimmed. False for a text without a valid name in front of a ":".
bool Split(std::string_view line, std::string_view& name, std::string_view& value);
// A number that is written with digits alone; -1 for everything else and for a number above the 63-bit range.
int64_t ReadNumber(std::string_view text);
}
