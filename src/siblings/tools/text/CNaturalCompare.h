#pragma once

#include <cstdint>

// The order in which people expect titles and file names: case does not count, and a run of the digits 0 to 9 is a number, so
// "Part 2" comes before "Part 10". All other characters are ordered by their code points after lowering.
class CNaturalCompare
{
public:
    // What happens to texts that are equal in this order but not identical.
    enum class Ties
    {
        Kept,    // they are equal
        Broken,  // the leading zeros of the first number in which they differ decide, fewer first, and then the code points
    };

    // Compares two NUL-terminated texts, or their first length characters when length is not negative: -1, 0 or 1.
    static int32_t Compare(const wchar_t* a, const wchar_t* b, int32_t length, Ties ties);
};
