#include "caller/report/Base64.h"

#include <algorithm>
#include <cstdint>

std::string EncodeBase64(std::string_view bytes)
{
    constexpr char Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
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
