#pragma once

#include <cstdint>
#include <optional>
#include <string>

// A time as people write it, in milliseconds: seconds, m:ss or h:mm:ss, with decimals or without. Nothing if it is none.
std::optional<int64_t> ReadTime(const std::string& text);
