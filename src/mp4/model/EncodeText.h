#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

inline constexpr size_t UnlimitedText = std::string_view::npos;

// A text as the UTF-8 that other programs read, also for the characters that the product itself does not show. It is cut between
// two characters where it would become longer than a count of bytes. Half of a surrogate pair becomes "?".
std::string EncodeText(std::wstring_view text, size_t maximumBytes = UnlimitedText);

inline std::span<const uint8_t> AsBytes(std::string_view text)
{
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}
