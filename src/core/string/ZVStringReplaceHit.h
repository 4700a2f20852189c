#pragma once

#include <cstdint>

// One match in a string: the position of its first character and the position after its last.
struct ZVStringReplaceHit
{
    int32_t Start;
    int32_t End;
};
