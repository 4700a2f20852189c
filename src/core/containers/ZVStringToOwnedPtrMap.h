#pragma once

#include "core/containers/ZVOwnedPtrMap.h"
#include "core/containers/ZVStringHash.h"
#include "core/string/ZVString.h"

// A map from text, as in ZVStringMap, to objects that it owns.
template <class String, bool CaseSensitive, class V>
class ZVStringToOwnedPtrMap : public ZVOwnedPtrMap<String, const wchar_t*, V, true>
{
public:
    using ZVOwnedPtrMap<String, const wchar_t*, V, true>::ZVOwnedPtrMap;

protected:
    uint32_t Hash(const wchar_t* key) const override { return ZVStringHash::Hash32<CaseSensitive>(key); }
    bool Equal(const wchar_t* left, const wchar_t* right) const override
    {
        return ZVStringHash::Equal<CaseSensitive>(left, right);
    }
};
