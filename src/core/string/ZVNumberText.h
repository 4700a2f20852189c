#pragma once

#include <cstdint>

// Numbers as text, written into a buffer of the caller. Room counts the characters that may be written; no terminator is. Each
// function tells how many characters it wrote.
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

// A whole number in base 2 to 36 with at least minimumDigits places. Nothing is written for another base or with a room below 8;
// a number that does not fit ends in "?".
int32_t WriteSigned(wchar_t* target, int32_t room, int64_t value, int32_t minimumDigits, int32_t base, uint32_t flags);

// The same without a sign, in base 2 to 16.
int32_t WriteUnsigned(wchar_t* target, int32_t room, uint64_t value, int32_t minimumDigits, int32_t base, uint32_t flags);

// A decimal number, rounded half away from zero to precision decimals, at most 16; -1 also means 16. With fixedPrecision exactly
// so many stand, otherwise trailing zeros are dropped. minimumDigits counts places before the point. "?" for a number that is not
// finite; a whole part beyond 64 bits is written as the largest that fits.
int32_t WriteDouble(wchar_t* target, int32_t room, double value, int32_t precision, bool fixedPrecision, int32_t minimumDigits,
                    uint32_t flags);

// "." or ",": what the locale puts before decimals, as it was when first asked.
wchar_t GetDecimalPoint();
}
