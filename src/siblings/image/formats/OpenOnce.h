#pragma once

#include "system/library/ZVRunTimeLibrary.h"

// The functions of a format's library, which the first file of the format opens and nobody closes. Null when the library is
// missing or lacks a function.
template <class Functions>
const Functions* OpenOnce(const char* fileName)
{
    static Functions s_functions;
    static const bool s_isOpen = ZVRunTimeLibrary(fileName).BindAll(s_functions);
    return s_isOpen ? &s_functions : nullptr;
}
