#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// A type of four characters as one number, the first character in its top byte.
constexpr uint32_t FourCC(const char (&text)[5])
{
    uint32_t type = 0;
    for (int index = 0; index < 4; ++index)
        type = type << 8 | static_cast<uint8_t>(text[index]);
    return type;
}

// The same of a type whose first character is the copyright sign, the byte 0xA9.
constexpr uint32_t SignedFourCC(const char (&text)[4])
{
    uint32_t type = 0xa9;
    for (int index = 0; index < 3; ++index)
        type = type << 8 | static_cast<uint8_t>(text[index]);
    return type;
}

// A type as a text, each byte as the character of that code. Bytes of 0, as in types that are small numbers, are left out.
ZVString GetTypeText(uint32_t type);
