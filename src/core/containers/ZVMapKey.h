#pragma once

#include "core/containers/ZVStringHash.h"

#include <cstdint>
#include <type_traits>

// Hash and equality of keys, unless a map has its own. Numbers and pointers hash to their value, cut to 32 bits. Strings that are
// passed as const wchar_t* are compared with their case. Any other class has its own GetHash() and operator==.
template <class K, class KArg>
struct ZVMapKey
{
    static constexpr bool IsText = std::is_class_v<K> && std::is_same_v<KArg, const wchar_t*>;

    static uint32_t Hash(KArg key)
    {
        if constexpr (IsText)
            return ZVStringHash::Hash32<true>(key);
        else if constexpr (std::is_integral_v<K> || std::is_enum_v<K>)
            return static_cast<uint32_t>(key);
        else if constexpr (std::is_floating_point_v<K>)
            return FromFloatingPoint(key);
        else if constexpr (std::is_pointer_v<K>)
            return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(key));
        else
            return key.GetHash();
    }

    static bool Equal(KArg left, KArg right)
    {
        if constexpr (IsText)
            return ZVStringHash::Equal<true>(left, right);
        else
            return left == right;
    }

private:
    // The whole part; all values that 64 bits cannot hold have the same hash.
    static uint32_t FromFloatingPoint(double key)
    {
        constexpr double Limit = 0x1p63;
        return key > -Limit && key < Limit ? static_cast<uint32_t>(static_cast<int64_t>(key)) : 0;
    }
};
