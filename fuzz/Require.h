#pragma once

#include "core/string/ZVString.h"

#include <cstdio>
#include <cstdlib>

// A promise that must hold for every input. If it does not, says where and ends the process, which counts as a failed input.
inline void Require(bool isTrue, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (isTrue)
        return;
    fprintf(stderr, "%s:%d: the input broke a promise\n", file, line);
    abort();
}

// True if all characters are the same, including those of code 0.
inline bool IsSame(const ZVString& left, const ZVString& right)
{
    return left.GetLength() == right.GetLength() &&
           wmemcmp(left.GetText(), right.GetText(), static_cast<size_t>(left.GetLength())) == 0;
}
