#pragma once

#include <cstdint>

// Numbers as text, written into the caller's buffer. room is the number of characters that may be written; there is no
// terminator. Each function returns how many characters it wrote.
namespace ZVNumberText
{
// Flags of whole numbers.
inline constexpr uint32_t LowerCaseDigits = 1;
inline constexpr uint32_t PlusSign = 2;             // before a positive number
inline constexpr uint32_t HexadecimalPrefix = 4;    // "0x" before base 16
inline constexpr uint32_t ThousandsSeparators = 8;  // "," where the locale's decimal point is ".", otherwise "."
inline constexpr uint32_t OrdinalSuffix = 16;       // "st", "nd", "rd" or "th"
inline constexpr uint32_t PadWithBlanks = 32;       // in place of leading zeros

// Flags of decimal numbers.
inline constexpr uint32_t AlwaysPoint = 1;  // "." whatever the locale says
inline constexpr uint32_t PlusUnlessNegative = 2;
inline constexpr uint32_t DropZeroWhole = 4;  // ".5" for 0.5

// How a whole number is written.
struct WholeForm
{
    int32_t MinimumDigits = 0;
    int32_t Base = 10;
    uint32_t Flags = 0;
};

// How a decimal number is written.
struct DecimalForm
{
    int32_t Precision = -1;       // the most decimals, up to 16; -1 also means 16
    bool FixedPrecision = false;  // exactly Precision decimals; otherwise trailing zeros are dropped
    int32_t MinimumDigits = 0;    // before the point
    uint32_t Flags = 0;
};

// A whole number in base 2 to 36. Nothing is written for another base or with a room below 8; a number that does not fit ends in
// "?".
int32_t WriteSigned(wchar_t* target, int32_t room, int64_t value, const WholeForm& form);

// The same without a sign, in base 2 to 16.
int32_t WriteUnsigned(wchar_t* target, int32_t room, uint64_t value, const WholeForm& form);

// A decimal number, rounded half away from zero. "?" for a number that is not finite; a whole part that 64 bits cannot hold is
// written as the largest that they can.
int32_t WriteDouble(wchar_t* target, int32_t room, double value, const DecimalForm& form);

// What the locale puts before decimals, "." or ",". The answer to the first call holds for the whole process.
wchar_t GetDecimalPoint();
}
