#pragma once

#include "core/containers/ZVCoreArray.h"

#include <type_traits>

// An array of numbers. New elements are zero.
template <class T>
class ZVNumberArray : public ZVCoreArray<T, T, true>
{
    static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
};
