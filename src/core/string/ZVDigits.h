#pragma once

// Decimal and hexadecimal digits in the scripts that numbers in tags and file names are written in.
namespace ZVDigits
{
// The value of a character that is not a digit.
inline constexpr int NotADigit = -1;

// The first code of each run of ten decimal digits beyond ASCII (Unicode, general category Nd).
inline constexpr wchar_t DecimalZeros[] = {
    0x0660,  // Arabic-Indic
    0x06f0,  // Extended Arabic-Indic
    0x0966,  // Devanagari
    0x09e6,  // Bengali
    0x0a66,  // Gurmukhi
    0x0ae6,  // Gujarati
    0x0b66,  // Oriya
    0x0c66,  // Telugu
    0x0ce6,  // Kannada
    0x0d66,  // Malayalam
    0x0e50,  // Thai
    0x0ed0,  // Lao
    0x0f20,  // Tibetan
    0xff10,  // full-width
};

// 0 to 9, or NotADigit.
constexpr int DecimalValue(wchar_t character)
{
    if (character >= L'0' && character <= L'9')
        return character - L'0';
    if (character < DecimalZeros[0])
        return NotADigit;
    for (const wchar_t zero : DecimalZeros)
        if (character >= zero && character <= zero + 9)
            return character - zero;
    return NotADigit;
}

// 0 to 15 for an ASCII hexadecimal digit, or NotADigit.
constexpr int HexadecimalValue(wchar_t character)
{
    if (character >= L'0' && character <= L'9')
        return character - L'0';
    const wchar_t lowered = character | 0x20;
    return lowered >= L'a' && lowered <= L'f' ? lowered - L'a' + 10 : NotADigit;
}
}
