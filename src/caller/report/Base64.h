#pragma once

#include <string>
#include <string_view>

// Bytes as base64 of RFC 4648, with its padding and without ends of lines.
std::string EncodeBase64(std::string_view bytes);
