#pragma once

#include "core/containers/ZVMap.h"
#include "core/containers/ZVStringHashBase.h"

// A set of texts that keeps only their 64-bit hashes.
template <bool CaseSensitive>
class ZVStringCRCUniqueList : public ZVMap<ZVStringHashBase<CaseSensitive>, ZVStringHashBase<CaseSensitive>, int, int, false>
{
    using Key = ZVStringHashBase<CaseSensitive>;
    using Base = ZVMap<Key, Key, int, int, false>;

public:
    using Base::Base;

    // Adds a text; false if it was already there.
    bool Add(const wchar_t* text) { return Base::Add(Key(text)); }
    bool Contains(const wchar_t* text) const { return Base::Contains(Key(text)); }
    // Removes a text; false if it was not there.
    bool Remove(const wchar_t* text) { return this->RemoveKey(Key(text)); }
};
