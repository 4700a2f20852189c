#pragma once

#include <string>

// A length in seconds as h:mm:ss, and a size in bytes in the largest unit of a thousand that it reaches. Empty for what is not above 0.
std::string MakeLength(double seconds);
std::string MakeSize(double bytes);
