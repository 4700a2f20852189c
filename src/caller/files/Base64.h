#pragma once

#include <optional>
#include <string>
#include <string_view>

// Bytes as base64 of RFC 4648, with its padding and without ends of lines.
std::string EncodeBase64(std::string_view bytes);

// The bytes of such a text; nothing if it is none.
std::optional<std::string> DecodeBase64(std::string_view text);
