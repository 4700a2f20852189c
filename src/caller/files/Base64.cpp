#include "caller/files/Base64.h"

#include <algorithm>
#include <cstdint>

namespace
{
constexpr std::string_view Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
}

std::string EncodeBase64(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (; !bytes.empty(); bytes.remove_prefix(std::min<size_t>(bytes.size(), 3)))
    {
        uint32_t group = 0;
        for (size_t index = 0; index < 3; ++index)
            group = group << 8 | (index < bytes.size() ? static_cast<uint8_t>(bytes[index]) : 0);
        for (size_t digit = 0; digit < 4; ++digit)
            text += digit <= bytes.size() ? Digits[group >> (18 - 6 * digit) & 63] : '=';
    }
    return text;
}

std::optional<std::string> DecodeBase64(std::string_view text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    for (int padding = 0; padding < 2 && text.ends_with('='); ++padding)
        text.remove_suffix(1);
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    uint32_t bits = 0;
    unsigned count = 0;
    for (const char letter : text)
    {
        const size_t digit = Digits.find(letter);
        if (digit == std::string_view::npos)
            return std::nullopt;
        bits = bits << 6 | static_cast<uint32_t>(digit);
        count += 6;
        if (count < 8)
            continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xff);
    }
    return bytes;
}
