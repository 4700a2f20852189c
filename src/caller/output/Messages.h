#pragma once

#include <string>

// Says on standard error what is wrong, in one line.
void SayError(const std::string& text);

// The same of a file.
void SayFailure(const std::string& path, const std::string& reason);

// A text of a stranger as part of a line: its control characters are blanks, so that it cannot talk to the terminal.
std::string MakePlain(const std::string& text);
