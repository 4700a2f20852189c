#pragma once

#include "core/string/ZVString.h"

#include <cstdlib>

// Ends the process, which is how a fuzz target tells that its input broke a promise.
inline void Require(bool isTrue)
{
    if (!isTrue)
        abort();
}

// True when all characters are the same, those of code 0 too.
inline bool IsSame(const ZVString& left, const ZVString& right)
{
    return left.GetLength() == right.GetLength() &&
           wmemcmp(left.GetText(), right.GetText(), static_cast<size_t>(left.GetLength())) == 0;
}
