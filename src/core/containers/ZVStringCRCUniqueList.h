#pragma once

#include "core/containers/ZVMap.h"
#include "core/containers/ZVStringHashBase.h"

// A set of texts that keeps only their 64-bit hashes.
template <bool CaseSensitive>
class ZVStringCRCUniqueList : public ZVMap<ZVStringHashBase<CaseSensitive>, ZVStringHashBase<CaseSensitive>, int, int, false>
{
public:
    using ZVMap<ZVStringHashBase<CaseSensitive>, ZVStringHashBase<CaseSensitive>, int, int, false>::ZVMap;

    // Removes a text; false when it is not there.
    bool Remove(ZVStringHashBase<CaseSensitive> text) { return this->RemoveKey(text); }
};
