#pragma once

#include <cstdint>

// The order in which people expect titles and file names: case does not count, and a run of the digits 0 to 9 is a number, so
// that "Part 2" comes before "Part 10". Everything else goes by its code point after lowering.
class CNaturalCompare
{
public:
    // What becomes of texts that are the same in this order but not alike.
    enum class Ties
    {
        Kept,
        Broken,  // by the leading zeros of the first number in which they differ, fewer first, and then by the code points
    };

    // Compares two NUL-terminated texts, or their first length characters when length is not negative: -1, 0 or 1.
    static int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t length, Ties ties);
};
