#pragma once

#include "core/containers/ZVMap.h"
#include "core/containers/ZVStringHash.h"
#include "core/string/ZVString.h"

// A map with text keys. Look-ups take a NUL-terminated text and make no string; null is the empty key. Unless CaseSensitive is
// set, keys that are equal when lowered are one key, which keeps its first spelling.
template <class String, bool CaseSensitive, class V, class VArg = const V&, bool HasValue = true>
class ZVStringMap : public ZVMap<String, const wchar_t*, V, VArg, HasValue>
{
public:
    using ZVMap<String, const wchar_t*, V, VArg, HasValue>::ZVMap;

protected:
    uint32_t Hash(const wchar_t* key) const override { return ZVStringHash::Hash32<CaseSensitive>(key); }
    bool Equal(const wchar_t* left, const wchar_t* right) const override
    {
        return ZVStringHash::Equal<CaseSensitive>(left, right);
    }
};
